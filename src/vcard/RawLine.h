// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/Header.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow::vcard {

class Charset;

/// The bytes that part two physical lines of a logical line.
struct Fold {
    std::uint32_t at = 0;   ///< the place in the joined line from which it was removed
    std::string_view bytes; ///< a line end and perhaps a blank; or `=`, blanks and a line end
    bool isSoftBreak = false;
    bool leavesBlank = false; ///< the blank after the line end is text, as in 2.1
};

/// Why a value is not searched.
enum class Unsearched {
    No,                ///< it is searched
    Base64,            ///< its header says that it is base64
    Base64DataAddress, ///< it is a `data:` address in base64
    Base64Letters,     ///< it is a picture, sound or key, and begins with many base64 letters
    UnknownCharset,
};

/// How a logical line is read. All parts of a line that comes in parts have the same context.
struct LineContext {
    bool inCard = false;
    bool isFrame = false; ///< BEGIN, END or VERSION: never searched
    Version version = Version::Later;
    std::size_t card = 0; ///< the number of the card in its file
    bool hasHeader = false;
    Coding coding = Coding::Plain;
    bool hasCharset = false;
    const Charset* charset = nullptr; ///< the one that the line names; null if it is unknown
    Unsearched unsearched = Unsearched::No;
};

/// A logical line or a part of one, as it is written in the file.
struct RawLine {
    std::string_view raw;    ///< all its bytes
    std::size_t endSize = 0; ///< the number of bytes of the line end at the end of `raw`
    std::string_view joined; ///< the bytes before the line end, without folds
    std::vector<Fold> folds;
    Header header; ///< its places are in `joined`; only the first part has one
    LineContext context;
    bool begins = true;         ///< this is the first part
    bool ends = true;           ///< this is the last part
    bool isUnsearched = false;  ///< a part of a value that is not searched; `joined` is empty
    bool isFolded = false;      ///< some fold is no soft break
    bool followsBase64 = false; ///< a line of base64 letters here would belong to the value above

    std::string room; ///< holds `joined` where there are folds

    /// The place in `raw` of a place of the joined line. It lies before the folds at that place.
    std::size_t InRaw(std::size_t place) const {
        std::size_t inRaw = place;
        for (auto fold = folds.begin(); fold != folds.end() && fold->at < place; ++fold) {
            inRaw += fold->bytes.size();
        }
        return inRaw;
    }

    /// Cuts the line at a place of the joined line and keeps what comes before it.
    void CutAt(std::size_t place) {
        raw = raw.substr(0, InRaw(place));
        joined = joined.substr(0, place);
        std::erase_if(folds, [place](const Fold& fold) { return fold.at >= place; });
        endSize = 0;
        ends = false;
    }

    std::string_view LineEnd() const { return raw.substr(raw.size() - endSize); }

    /// Forgets what was read, for the next line; its place among the other lines stays.
    void Clear() {
        endSize = 0;
        joined = {};
        folds.clear();
        header = Header();
        ends = true;
        isFolded = false;
    }
};

} // namespace vexmarrow::vcard

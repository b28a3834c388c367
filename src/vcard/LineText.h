// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/Charset.h"
#include "vcard/LineReader.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow::vcard {

/// Units of a logical line that are worked on at once.
inline constexpr std::size_t kMostUnits = 1'048'576;

/// The text of a logical line, or of a part of one.
class LineText {
public:
    /// What there is to search; valid as long as the raw line.
    std::string_view Text() const { return isJoined_ ? joined_ : std::string_view(decoded_.text); }

    /// Whether it is the very bytes of the joined line.
    bool IsJoined() const { return isJoined_; }

    /// Where the separating colon is in the text; npos where there is none.
    std::size_t Border() const { return border_; }

    /// Where in the joined line the unit begins that begins at a place of the text; for the end of
    /// the text, where that of the joined line is. Only after LineDecoder::Locate.
    std::size_t InJoined(std::size_t place) const {
        if (isJoined_) {
            return place;
        }
        return place < decoded_.from.size() ? decoded_.from[place] : joined_.size();
    }

    /// By which the units of a value are written that is decoded by another charset than the file:
    /// null where there is none.
    const Charset* ValueCharset() const { return valueCharset_; }

private:
    friend class LineDecoder;

    std::string_view joined_;
    bool isJoined_ = true;
    bool isLocated_ = true;
    Decoded decoded_;
    std::size_t border_ = std::string_view::npos;
    const Charset* valueCharset_ = nullptr;
};

/// How text is encoded where no line names a charset.
struct FileCharsets {
    const Charset* file = nullptr; ///< of the file
    const Charset* page = nullptr; ///< the code page
    const Charset* utf8 = nullptr;
    bool hasMark = false; ///< so that other charsets count for coded values only
};

/// Decodes logical lines.
class LineDecoder {
public:
    explicit LineDecoder(const FileCharsets& charsets) : charsets_(charsets) {}

    /// Leaves of a very long line what is worked on at once and a little more, up to where a unit
    /// begins: only that is to be decoded.
    static void Shorten(RawLine& line);

    /// Decodes a line that is searched, or at least its first kMostUnits units.
    void Decode(const RawLine& line, LineText& text);

    /// Cuts a line that is longer to its first kMostUnits units, and `line` to their bytes.
    void Cut(RawLine& line, LineText& text);

    /// Decodes a line that was written, however long it is.
    void DecodeAgain(const RawLine& line, LineText& text);

    /// Makes sure that the text knows where its units come from.
    void Locate(const RawLine& line, LineText& text);

private:
    /// A character of the file amid coded bytes, which is not decoded with them.
    struct Beside {
        std::size_t at = 0;    // in bytes_
        std::size_t begin = 0; // in the joined line
        std::size_t end = 0;
    };

    static std::size_t BeginOfValue(const RawLine& line);
    void DecodeText(const RawLine& line, LineText& text);
    bool IsUtf8Alike(std::string_view header, const LineText& text) const;
    void DecodeCoded(std::string_view joined, LineText& text);
    void Uncode(std::string_view joined, std::size_t value);
    void AddBytes(std::string_view bytes, std::size_t place);
    const Charset* CharsetOfCoded(bool isWhole) const;
    void AppendRun(std::size_t begin, std::size_t end, const Charset& charset, Decoded& decoded);

    FileCharsets charsets_;
    std::string bytes_;                 // of a coded value
    std::vector<std::uint32_t> places_; // of each in the joined line, where they are needed
    bool needsPlaces_ = false;
    std::size_t most_ = 0; // units to decode
    std::vector<Beside> beside_;
    Decoded run_;
};

/// Whether a quoted-printable code stands at a place.
bool IsCode(std::string_view text, std::size_t place);

} // namespace vexmarrow::vcard

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/Charset.h"

#include <cstddef>
#include <string_view>

namespace vexmarrow::vcard {

/// The text of a logical line, or of a part of one.
class LineText {
public:
    /// The text to search; valid as long as the raw line.
    std::string_view Text() const { return isJoined_ ? joined_ : std::string_view(decoded_.text); }

    /// Whether the text is the bytes of the joined line.
    bool IsJoined() const { return isJoined_; }

    /// The place of the separating colon in the text; npos if there is none.
    std::size_t Colon() const { return colon_; }

    /// The place in the joined line of the unit at a place of the text, or of the end of the text.
    /// May be called only after LineDecoder::Locate.
    std::size_t InJoined(std::size_t place) const {
        if (isJoined_) {
            return place;
        }
        return place < decoded_.from.size() ? decoded_.from[place] : joined_.size();
    }

    /// The charset in which new units of the value are written; null for the charset of the file.
    const Charset* ValueCharset() const { return valueCharset_; }

private:
    friend class LineDecoder;

    std::string_view joined_;
    bool isJoined_ = true;
    bool isLocated_ = true;
    DecodedText decoded_;
    std::size_t colon_ = std::string_view::npos;
    const Charset* valueCharset_ = nullptr;
};

} // namespace vexmarrow::vcard

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
    /// What there is to search; valid as long as the raw line.
    std::string_view Text() const { return isJoined_ ? joined_ : std::string_view(decoded_.text); }

    /// Whether it is the very bytes of the joined line.
    bool IsJoined() const { return isJoined_; }

    /// Where the separating colon is in the text; npos where there is none.
    std::size_t Colon() const { return colon_; }

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
    DecodedText decoded_;
    std::size_t colon_ = std::string_view::npos;
    const Charset* valueCharset_ = nullptr;
};

} // namespace vexmarrow::vcard

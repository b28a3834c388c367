// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/Ascii.h"

#include <algorithm>
#include <string_view>

namespace vexmarrow::vcard {

inline bool IsBase64Letter(char byte) {
    return IsLetterOrDigit(byte) || byte == '+' || byte == '/' || byte == '=';
}

/// Whether a physical line consists of base64 letters, at least one, and perhaps blanks after them.
inline bool IsBase64Line(std::string_view line) {
    line = WithoutBlanksAtEnd(line);
    return !line.empty() && std::all_of(line.begin(), line.end(), IsBase64Letter);
}

/// Whether a value is a `data:` address in base64.
inline bool IsBase64DataAddress(std::string_view value) {
    constexpr std::string_view kMark = ";base64";
    const std::string_view type = value.substr(0, value.find(','));
    return BeginsWithWord(value, "data:") && type.size() < value.size() &&
           type.size() >= kMark.size() && IsWord(type.substr(type.size() - kMark.size()), kMark);
}

} // namespace vexmarrow::vcard

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Text.h"

namespace vexmarrow {

std::u16string InLowerAscii(std::u16string_view text) {
    std::u16string lower(text);
    for (char16_t& unit : lower) {
        if (unit >= u'A' && unit <= u'Z') {
            unit = static_cast<char16_t>(unit + (u'a' - u'A'));
        }
    }
    return lower;
}

bool IsBlank(std::u16string_view text) {
    return text.find_first_not_of(u' ') == std::u16string_view::npos;
}

std::u16string Decimal(long long number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

std::u16string Counted(std::size_t number, std::u16string_view one, std::u16string_view several) {
    return Concat(Decimal(static_cast<long long>(number)), number == 1 ? one : several);
}

std::vector<std::u16string_view> Split(std::u16string_view text, std::u16string_view separator) {
    std::vector<std::u16string_view> parts;
    if (text.empty()) {
        return parts;
    }
    std::size_t start = 0;
    for (;;) {
        const std::size_t at = text.find(separator, start);
        if (at == std::u16string_view::npos) {
            parts.push_back(text.substr(start));
            return parts;
        }
        parts.push_back(text.substr(start, at - start));
        start = at + separator.size();
    }
}

} // namespace vexmarrow

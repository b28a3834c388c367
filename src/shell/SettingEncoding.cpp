// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "shell/SettingEncoding.h"

#include "base/Utf8.h"

#include <cstddef>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kPrefix = u"utf16:"; // before the digits of an encoded setting
constexpr std::u16string_view kDigits = u"0123456789abcdef";
constexpr std::size_t kDigitsPerUnit = 4;
constexpr unsigned kBitsPerDigit = 4;

bool SurvivesUtf8(std::u16string_view text) {
    // A reader of UTF-8 takes U+FEFF at the front for a mark and drops it.
    return !text.starts_with(u'\uFEFF') && TextFromUtf8(NativeName(text)) == text;
}

std::size_t ValueOfDigit(char16_t digit) {
    const bool upper = digit >= u'A' && digit <= u'F';
    return kDigits.find(upper ? static_cast<char16_t>(digit + (u'a' - u'A')) : digit);
}

} // namespace

std::u16string EncodeSetting(std::u16string_view setting) {
    if (SurvivesUtf8(setting) && !setting.starts_with(kPrefix)) {
        return std::u16string(setting);
    }
    std::u16string encoded(kPrefix);
    for (const unsigned unit : setting) {
        for (std::size_t left = kDigitsPerUnit; left > 0; --left) {
            encoded += kDigits[(unit >> ((left - 1) * kBitsPerDigit)) & 0xFU];
        }
    }
    return encoded;
}

std::u16string DecodeSetting(std::u16string_view encoded) {
    const std::u16string_view digits =
        encoded.starts_with(kPrefix) ? encoded.substr(kPrefix.size()) : u"";
    std::u16string setting(digits.size() / kDigitsPerUnit, u'\0');
    bool isEncoded = encoded.starts_with(kPrefix) && digits.size() % kDigitsPerUnit == 0;
    for (std::size_t i = 0; isEncoded && i < digits.size(); ++i) {
        const std::size_t value = ValueOfDigit(digits[i]);
        char16_t& unit = setting[i / kDigitsPerUnit];
        unit = static_cast<char16_t>(std::size_t{unit} << kBitsPerDigit | value);
        isEncoded = value < kDigits.size();
    }
    return isEncoded ? setting : std::u16string(encoded);
}

} // namespace vexmarrow

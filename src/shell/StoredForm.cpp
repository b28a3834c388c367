// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "shell/StoredForm.h"

#include "base/Utf8.h"

#include <cstddef>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kSpelledOut = u"utf16:";
constexpr std::u16string_view kDigits = u"0123456789abcdef";
constexpr std::size_t kDigitsPerUnit = 4;
constexpr unsigned kBitsPerDigit = 4;

/// A reader of UTF-8 takes U+FEFF at the front for a mark and drops it.
bool SurvivesUtf8(std::u16string_view text) {
    return !text.starts_with(u'\uFEFF') && TextFromUtf8(NativeName(text)) == text;
}

std::size_t ValueOfDigit(char16_t digit) {
    const bool upper = digit >= u'A' && digit <= u'F';
    return kDigits.find(upper ? static_cast<char16_t>(digit + (u'a' - u'A')) : digit);
}

} // namespace

std::u16string StoredForm(std::u16string_view setting) {
    if (SurvivesUtf8(setting) && !setting.starts_with(kSpelledOut)) {
        return std::u16string(setting);
    }
    std::u16string spelled(kSpelledOut);
    for (const unsigned unit : setting) {
        for (std::size_t left = kDigitsPerUnit; left > 0; --left) {
            spelled += kDigits[(unit >> ((left - 1) * kBitsPerDigit)) & 0xFU];
        }
    }
    return spelled;
}

std::u16string SettingFromStoredForm(std::u16string_view stored) {
    const std::u16string_view digits =
        stored.starts_with(kSpelledOut) ? stored.substr(kSpelledOut.size()) : u"";
    std::u16string setting(digits.size() / kDigitsPerUnit, u'\0');
    bool spelled = stored.starts_with(kSpelledOut) && digits.size() % kDigitsPerUnit == 0;
    for (std::size_t i = 0; spelled && i < digits.size(); ++i) {
        const std::size_t value = ValueOfDigit(digits[i]);
        char16_t& unit = setting[i / kDigitsPerUnit];
        unit = static_cast<char16_t>(std::size_t{unit} << kBitsPerDigit | value);
        spelled = value < kDigits.size();
    }
    return spelled ? setting : std::u16string(stored);
}

} // namespace vexmarrow

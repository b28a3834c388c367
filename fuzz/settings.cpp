// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Text.h"
#include "base/Utf8.h"
#include "fuzz/Fuzz.h"
#include "shell/SettingEncoding.h"

// Storing any text as a setting in a UTF-8 file.

namespace vexmarrow::fuzz {
namespace {

/// Stores a text and reads it back, and reads the text as if it had been stored.
void TryStored(const std::u16string& text) {
    const auto fits = [](const std::u16string& any) {
        return TextFromUtf8(NativeName(any)) == any && !any.starts_with(u'\uFEFF');
    };
    const std::u16string stored = EncodeSetting(text);
    Require(DecodeSetting(stored) == text && fits(stored), "a setting comes back");
    Require((stored == text) == (fits(text) && !text.starts_with(u"utf16:")),
            "a setting is spelled out where it must be, and only there");
    const std::u16string setting = DecodeSetting(text);
    std::u16string spelled = u"utf16:";
    for (const char16_t unit : setting) {
        for (const int shift : {12, 8, 4, 0}) {
            spelled += u"0123456789abcdef"[unit >> shift & 15];
        }
    }
    Require(setting == text || spelled == InLowerAscii(text), "only digits are taken for digits");
}

} // namespace

void TryInput(Input input) {
    TryStored(input.Text());
    TryStored(u"utf16:" + TextFromNativeName(input.Rest()));
}

} // namespace vexmarrow::fuzz

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "fuzz/Fuzz.h"
#include "shell/StoredForm.h"
#include "shell/Values.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>

// Settings: numbers and switches in texts, and texts in a file that is UTF-8.

namespace vexmarrow::fuzz {
namespace {

template <typename Value>
std::optional<Value> Try(Value (*read)(std::u16string_view), std::string_view text) {
    try {
        return read(TextFromNativeName(text));
    } catch (const Failure&) {
        return std::nullopt;
    }
}

/// A text of any kind: what is a number is that of another implementation.
void TryValue(std::string text) {
    const std::optional<double> number = Try(NumberFromText, text);
    const std::optional<int> integer = Try(IntegerFromText, text);
    const std::optional<bool> boolean = Try(BooleanFromText, text);
    text.erase(0, text.find_first_not_of(' '));
    text.erase(text.find_last_not_of(' ') + 1);
    char* end = nullptr;
    errno = 0;
    const double expected = std::strtod(text.c_str(), &end);
    const bool numeric = !text.empty() && end == text.data() + text.size() &&
                         text.find_first_not_of("0123456789.eE+-") == std::string::npos;
    Require(number ? numeric && *number == expected : !numeric || errno == ERANGE,
            "a number is read, and nothing else is");
    const std::u16string word = InLowerAscii(TextFromUtf8(text));
    const std::optional<bool> known = word == u"true"    ? std::optional(true)
                                      : word == u"false" ? std::optional(false)
                                      : number           ? std::optional(*number != 0)
                                                         : std::nullopt;
    Require(boolean == known, "a switch is a word or a number, of which zero is false");
    const double limit = std::numeric_limits<int>::max();
    Require(integer ? number.has_value() : !number || std::abs(*number) >= limit,
            "a number that fits is an integer");
    const double distance = integer ? std::abs(*number - *integer) : 0;
    Require(distance < 0.5 || (distance == 0.5 && *integer % 2 == 0),
            "an integer is the nearest one, the even one of two");
}

/// A number that is written comes back.
void TryNumber(std::string_view bytes) {
    double number = 0;
    std::memcpy(&number, bytes.data(), std::min(bytes.size(), sizeof number));
    char digits[64] = {};
    std::to_chars(digits, std::end(digits), number);
    const std::optional<double> again = Try(NumberFromText, std::string(" ") + digits);
    Require(std::isfinite(number) ? again == number : !again, "a finite number comes back");
}

/// Any text is stored and comes back, and any text may be found stored.
void TryStored(const std::u16string& text) {
    const auto fits = [](const std::u16string& any) {
        return TextFromUtf8(NativeName(any)) == any && !any.starts_with(u'\uFEFF');
    };
    const std::u16string stored = StoredForm(text);
    Require(SettingFromStoredForm(stored) == text && fits(stored), "a setting comes back");
    Require((stored == text) == (fits(text) && !text.starts_with(u"utf16:")),
            "a setting is spelled out where it must be, and only there");
    const std::u16string setting = SettingFromStoredForm(text);
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
    TryValue(std::string(input.Rest()));
    TryNumber(input.Rest());
    TryStored(input.Text());
    TryStored(u"utf16:" + TextFromNativeName(input.Rest()));
}

} // namespace vexmarrow::fuzz

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "shell/Choices.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "shell/SettingsStore.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace vexmarrow {
namespace {

std::u16string_view WithoutBlanks(std::u16string_view text) {
    const std::size_t first = text.find_first_not_of(u' ');
    if (first == std::u16string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

std::optional<double> NumberIn(std::u16string_view text) {
    std::string digits = NativeName(InLowerAscii(WithoutBlanks(text)));
    if (digits.size() > 1 && digits[0] == '+' && digits[1] != '-') {
        digits.erase(0, 1); // which from_chars does not accept
    }
    // from_chars also accepts "inf" and "nan", which are not numbers here.
    if (digits.find_first_not_of("0123456789.e+-") != std::string::npos) {
        return std::nullopt;
    }
    double number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return number;
}

template <typename Value>
std::u16string Stored(const SettingsStore& settings, const Choice<Value>& choice) {
    return settings.GetSetting(choice.key, choice.fallback);
}

} // namespace

bool LoadChoice(const SettingsStore& settings, const Choice<bool>& choice) {
    const std::u16string stored = Stored(settings, choice);
    const std::u16string word = InLowerAscii(WithoutBlanks(stored));
    if (word == u"true" || word == u"false") {
        return word == u"true";
    }
    if (const std::optional<double> number = NumberIn(stored)) {
        return *number != 0;
    }
    throw Failure(Concat(u"The value \"", stored, u"\" is not True, False or a number."));
}

int LoadChoice(const SettingsStore& settings, const Choice<int>& choice) {
    const std::u16string stored = Stored(settings, choice);
    const std::optional<double> number = NumberIn(stored);
    const double rounded = number ? std::nearbyint(*number) : 0;
    if (!number || rounded < std::numeric_limits<int>::min() ||
        rounded > std::numeric_limits<int>::max()) {
        throw Failure(Concat(u"The value \"", stored, u"\" is not a whole number."));
    }
    return static_cast<int>(rounded);
}

double LoadChoice(const SettingsStore& settings, const Choice<double>& choice) {
    const std::u16string stored = Stored(settings, choice);
    if (const std::optional<double> number = NumberIn(stored)) {
        return *number;
    }
    throw Failure(Concat(u"The value \"", stored, u"\" is not a number."));
}

std::u16string LoadChoice(const SettingsStore& settings, const Choice<std::u16string>& choice) {
    return Stored(settings, choice);
}

void SaveChoice(SettingsStore& settings, const Choice<bool>& choice, bool value) {
    settings.SaveSetting(choice.key, value ? u"True" : u"False");
}

void SaveChoice(SettingsStore& settings, const Choice<int>& choice, int value) {
    settings.SaveSetting(choice.key, Decimal(value));
}

void SaveChoice(SettingsStore& settings, const Choice<std::u16string>& choice,
                std::u16string_view value) {
    settings.SaveSetting(choice.key, value);
}

} // namespace vexmarrow

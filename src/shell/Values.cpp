// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "shell/Values.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"

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
        digits.erase(0, 1); // from_chars knows no plus sign
    }
    // from_chars also reads "inf" and "nan", which are words and no numbers here.
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

} // namespace

bool BooleanFromText(std::u16string_view text) {
    const std::u16string word = InLowerAscii(WithoutBlanks(text));
    if (word == u"true" || word == u"false") {
        return word == u"true";
    }
    if (const std::optional<double> number = NumberIn(text)) {
        return *number != 0;
    }
    throw Failure(Concat(u"The value \"", text, u"\" is neither True, False nor a number."));
}

double NumberFromText(std::u16string_view text) {
    if (const std::optional<double> number = NumberIn(text)) {
        return *number;
    }
    throw Failure(Concat(u"The value \"", text, u"\" is not a number."));
}

int IntegerFromText(std::u16string_view text) {
    const std::optional<double> number = NumberIn(text);
    const double rounded = number ? std::nearbyint(*number) : 0;
    if (!number || rounded < std::numeric_limits<int>::min() ||
        rounded > std::numeric_limits<int>::max()) {
        throw Failure(Concat(u"The value \"", text, u"\" is not a whole number."));
    }
    return static_cast<int>(rounded);
}

std::u16string_view TextFromBoolean(bool value) {
    return value ? u"True" : u"False";
}

} // namespace vexmarrow

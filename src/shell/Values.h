// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

// Conversions between settings, which are texts, and the values that controls hold. The readers
// throw Failure for a text that is no such value.

/// "True", "False" (in any letter case) or a number, of which only zero is false.
bool BooleanFromText(std::u16string_view text);

/// A number, with or without a fraction.
double NumberFromText(std::u16string_view text);

/// A number, rounded to the nearest whole one (halves to the even one). Fails when it does not fit
/// into 32 bits.
int IntegerFromText(std::u16string_view text);

/// "True" or "False".
std::u16string_view TextFromBoolean(bool value);

} // namespace vexmarrow

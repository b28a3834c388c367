// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

/// Caption of the main window, and the product's full name.
inline constexpr std::u16string_view kProductName = u"Vexmarrow Software";

/// The title of message boxes: `product` without its last word (what follows the last blank), and
/// without further last words while it is longer than 40 characters.
std::u16string ApplicationTitle(std::u16string_view product);

/// The text of the box that "Help" shows.
std::u16string HelpText();

} // namespace vexmarrow

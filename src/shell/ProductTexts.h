// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

/// The product's full name, which is also the caption of the main window.
inline constexpr std::u16string_view kProductName = u"Vexmarrow Software";

/// The title of message boxes: `product` without its last word. While the result is longer than
/// 40 characters, its last word is removed as well. Words end at blanks.
std::u16string ApplicationTitle(std::u16string_view product);

/// The text of the box that "Help" shows.
std::u16string HelpText();

} // namespace vexmarrow

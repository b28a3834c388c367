// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

// Settings are kept in a file that is UTF-8, but a setting may be any 16-bit characters: a path
// whose bytes are no UTF-8 holds surrogates without partners.

/// What stands in the file for a setting: the text itself or, where the file would not give it back
/// unchanged, "utf16:" and four hexadecimal digits per 16-bit character.
std::u16string StoredForm(std::u16string_view setting);

/// The inverse. A spelling that StoredForm never makes, typed into the file by hand, is taken as
/// the text that it is.
std::u16string SettingFromStoredForm(std::u16string_view stored);

} // namespace vexmarrow

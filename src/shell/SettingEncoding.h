// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

// The settings file is UTF-8, but a setting may hold any 16-bit characters. For example, a path
// whose bytes are not UTF-8 contains unpaired surrogates.

/// The text that represents a setting in the file. It is the setting itself if the file can hold
/// it unchanged, otherwise "utf16:" and four hexadecimal digits per 16-bit character.
std::u16string EncodeSetting(std::u16string_view setting);

/// The inverse of EncodeSetting. Text that EncodeSetting never produces, for example because it was
/// typed into the file by hand, is returned unchanged.
std::u16string DecodeSetting(std::u16string_view encoded);

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

// Two readings of bytes as UTF-8. Both give 16-bit characters and never fail; they differ in what
// becomes of bytes that are not UTF-8.

/// Text of a file: each maximal ill-formed part becomes one U+FFFD. A mark is an ordinary U+FEFF.
std::u16string TextFromUtf8(std::string_view bytes);

/// A file name as the system gives it: each byte b that is not part of well-formed UTF-8 becomes
/// the lone low surrogate U+DC00 + b, so that NativeName gives back the very same bytes.
std::u16string TextFromNativeName(std::string_view bytes);

/// The bytes of a name or path: the inverse of TextFromNativeName. A lone surrogate that stands
/// for no byte is encoded as if it were a character, which names no file that could be listed.
std::string NativeName(std::u16string_view text);

} // namespace vexmarrow

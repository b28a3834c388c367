// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
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

// UTF-8 as a code page, where any bytes come out as they went in.

/// Appends the characters of `bytes` to `text`, bytes that are not UTF-8 as TextFromNativeName has
/// them.
void DecodeUtf8(std::string_view bytes, std::u16string& text);

/// Appends the bytes of `text` to `bytes`: the inverse of DecodeUtf8, and `substitute` for each lone
/// surrogate that stands for no byte.
void EncodeUtf8(std::u16string_view text, std::string& bytes, char substitute);

// The same for text into which half characters may be put: in 16-bit units alone, a first half
// before a stray byte would be a character.

/// What stands for the stray byte b in wide text is kStrayByte + b; all else in it is 16-bit units.
inline constexpr char32_t kStrayByte = 0x110000;

/// The wide text of 16-bit units, of which lone surrogates from U+DC80 to U+DCFF are stray bytes.
std::u32string WideText(std::u16string_view text);
void DecodeUtf8(std::string_view bytes, std::u32string& text);
void EncodeUtf8(std::u32string_view text, std::string& bytes, char substitute);

/// Whether `bytes` are well-formed UTF-8 from the first to the last.
bool IsUtf8(std::string_view bytes);

/// What TextFromUtf8 makes of `bytes`, in UTF-8: `bytes` themselves where they are well-formed,
/// else it is put into `room`.
std::string_view WellFormedUtf8(std::string_view bytes, std::string& room);

/// How many bytes of ASCII `bytes` begin with.
std::size_t AsciiLength(std::string_view bytes);

/// Bytes at the beginning of others, and how many 16-bit units DecodeUtf8 makes of them.
struct TextStretch {
    std::size_t bytes = 0;
    std::size_t units = 0;
};

/// The stretch of `most` units at the beginning of `bytes`: of one more when a character of two
/// lies across its end, of fewer when the bytes end before that. With `more`, they go on where
/// they end, and a character of which only a part is there is left out.
TextStretch MeasureUtf8(std::string_view bytes, std::size_t most, bool more);

} // namespace vexmarrow

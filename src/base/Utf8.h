// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vexmarrow {

// There are two ways to decode UTF-8. Both give 16-bit units and never fail. They differ in how
// they decode bytes that are not UTF-8.

/// Decodes the text of a file. Each maximal ill-formed part becomes one U+FFFD. A byte-order mark
/// becomes U+FEFF, like any other character.
std::u16string TextFromUtf8(std::string_view bytes);

/// Decodes a file name as the system gives it. Each byte b that is not part of well-formed UTF-8 (a
/// stray byte) becomes the lone low surrogate U+DC00 + b, so that NativeName can restore it.
std::u16string TextFromNativeName(std::string_view bytes);

/// The bytes of a name or path: the inverse of TextFromNativeName. A lone surrogate that stands
/// for no byte is encoded as if it were a character. No listed file has such a name.
std::string NativeName(std::u16string_view text);

// UTF-8 as a code page: decoding any bytes and encoding the result gives the same bytes.

/// Appends the characters of `bytes` to `text`. Decodes stray bytes as TextFromNativeName does.
void DecodeUtf8(std::string_view bytes, std::u16string& text);

/// Appends the bytes of `text` to `bytes`: the inverse of DecodeUtf8. Appends `substitute` for each
/// lone surrogate that stands for no byte.
void EncodeUtf8(std::u16string_view text, std::string& bytes, char substitute);

// The same for wide text. A pair may insert the first half of a surrogate pair before a stray byte.
// In 16-bit units, these two would become a character; in wide text they stay apart.

/// In wide text, the stray byte b is kStrayByte + b. All other elements are 16-bit units.
inline constexpr char32_t kStrayByte = 0x110000;

/// Wide text from 16-bit units, in which lone surrogates from U+DC80 to U+DCFF are stray bytes.
std::u32string WideText(std::u16string_view text);
void DecodeUtf8(std::string_view bytes, std::u32string& text);
void EncodeUtf8(std::u32string_view text, std::string& bytes, char substitute);

/// Whether all of `bytes` are well-formed UTF-8.
bool IsUtf8(std::string_view bytes);

/// The text that TextFromUtf8 makes of `bytes`, in UTF-8. Returns `bytes` themselves if they are
/// well-formed; otherwise writes the text to `room` and returns a view of that.
std::string_view WellFormedUtf8(std::string_view bytes, std::string& room);

/// The number of ASCII bytes at the beginning of `bytes`.
std::size_t AsciiLength(std::string_view bytes);

/// The length of a beginning of some bytes, and the number of 16-bit units that it decodes to.
struct TextStretch {
    std::size_t bytes = 0;
    std::size_t units = 0;
};

/// Measures the beginning of `bytes` that decodes to `most` units. It has one unit more if a
/// character of two units lies across that limit, and fewer if the bytes end first. `more` says
/// that further bytes will follow; then a character that is cut off at the end is left out.
TextStretch MeasureUtf8(std::string_view bytes, std::size_t most, bool more);

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// Replaces characters that a code page lacks, one for each 16-bit unit.
inline constexpr char kSubstitute = '?';

/// How the bytes of a text without a byte-order mark stand for 16-bit characters. Any bytes can be
/// decoded, and encoding the result gives the same bytes.
class CodePage {
public:
    virtual ~CodePage() = default;

    /// The name of the page in ChoosableCodePages. A page that is not listed there has the name
    /// that was passed to MakeCodePage.
    virtual std::u16string_view Name() const = 0;

    /// Appends the characters of `bytes` to `text`.
    virtual void Decode(std::string_view bytes, std::u16string& text) const = 0;

    /// Appends the bytes of `text` to `bytes`, with kSubstitute for each unit that the page lacks.
    virtual void Encode(std::u16string_view text, std::string& bytes) const = 0;

    /// Converts well-formed UTF-8 to this page, with kSubstitute for each 16-bit unit that the page
    /// lacks. Returns `utf8` itself if the bytes are the same; otherwise writes the result to
    /// `room` and returns a view of that.
    virtual std::string_view FromUtf8(std::string_view utf8, std::string& room) const = 0;

    /// Whether the page has bytes that stand for no character. Then text into which half characters
    /// may be inserted has to be wide text (base/Utf8.h).
    virtual bool HasStrayBytes() const = 0;

    /// The code of a character: its byte in a single-byte page, which is kSubstitute if the page
    /// lacks it; the value of the 16-bit unit in UTF-8.
    virtual int CodeOf(char16_t character) const = 0;

    /// The bytes of `text` if finding and replacing them in the bytes of a text has the same result
    /// as in its characters. Nothing if the page lacks a character of `text`, or if `text` holds
    /// half a character or a stray byte.
    virtual std::optional<std::string> SearchableBytes(std::u16string_view text) const = 0;

    /// Whether several pairs of SearchableBytes, applied to these bytes one after another, have the
    /// same result as in characters. They may not if bytes are stray: once the bytes between them
    /// are removed, they may form a character.
    virtual bool IsExactInBytes(std::string_view bytes) const = 0;

    /// Measures the beginning of `bytes` that decodes to `most` units, as MeasureUtf8 does.
    virtual TextStretch Measure(std::string_view bytes, std::size_t most, bool more) const = 0;
};

/// Whether any character of `text` has one of these codes in the page: below 32, from 127 to 159,
/// or 63, which is the code of "?" and of all characters that the page lacks.
bool HasUnusualCharacters(std::u16string_view text, const CodePage& page);

/// A page that users can choose, and its languages in words.
struct ChoosableCodePage {
    std::u16string_view name;
    std::u16string_view languages;
};
std::span<const ChoosableCodePage> ChoosableCodePages();

/// Makes UTF-8 or, under any other name, a single-byte page. Aliases that ICU knows are accepted;
/// case and hyphens do not matter. Throws Failure.
std::unique_ptr<const CodePage> MakeCodePage(std::u16string_view name);

/// Makes a single-byte page from ICU's table of that name. The page is one to one even where the
/// table is not: a byte from 80 to 9F without a character becomes the control character of the same
/// value; any other byte b without a character, or with that of a lower byte, becomes U+F700 + b.
/// Throws Failure if there is no such page, if it is not single-byte, or if 00 to 7F are not ASCII.
std::unique_ptr<const CodePage> MakeSingleByteCodePage(std::u16string_view name);

/// Makes the page for UTF-8 without a mark. Stray bytes decode to lone surrogates (base/Utf8.h) and
/// are restored when they are encoded.
std::unique_ptr<const CodePage> MakeUtf8CodePage();

/// The name of the Windows page for the language of a POSIX locale such as "de_DE.UTF-8":
/// "windows-1252" unless the language needs another one.
std::u16string_view CodePageForLocale(std::string_view locale);

/// The same for the locale of the environment: the first of LC_ALL, LC_CTYPE and LANG that is set.
std::u16string_view CodePageOfEnvironment();

/// The code page of all text without a byte-order mark. There is one object in the process, which
/// is passed to everything that needs it.
class AnsiCodePage {
public:
    explicit AnsiCodePage(std::u16string_view name) { Choose(name); }

    /// The present page. It stays valid when another one is chosen.
    const CodePage& Page() const { return *page_; }

    /// Changes the page, from the next file that is read. Throws Failure and keeps the present page
    /// if MakeCodePage refuses the name.
    void Choose(std::u16string_view name);

    /// A number that grows each time a page is chosen.
    std::uint64_t Revision() const { return revision_; }

private:
    std::vector<std::unique_ptr<const CodePage>> made_; // every page that was ever chosen
    const CodePage* page_ = nullptr;
    std::uint64_t revision_ = 0;
};

} // namespace vexmarrow

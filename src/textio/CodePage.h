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

/// What becomes of a character that a code page lacks, one per 16-bit unit.
inline constexpr char kSubstitute = '?';

/// The relation between the bytes of a text without mark and 16-bit characters. Every byte
/// sequence decodes, and encoding what was decoded gives the same bytes.
class CodePage {
public:
    virtual ~CodePage() = default;

    /// The name of the page: that of ChoosableCodePages if it is one of those, else the one by
    /// which it was asked for.
    virtual std::u16string_view Name() const = 0;

    /// Appends the characters of `bytes` to `text`.
    virtual void Decode(std::string_view bytes, std::u16string& text) const = 0;

    /// Appends the bytes of `text` to `bytes`, kSubstitute for each unit that the page lacks.
    virtual void Encode(std::u16string_view text, std::string& bytes) const = 0;

    /// The bytes of well-formed UTF-8 in this page, kSubstitute for each 16-bit unit that the
    /// page lacks. They are `utf8` itself where it is the same, else they are put into `room`.
    virtual std::string_view FromUtf8(std::string_view utf8, std::string& room) const = 0;

    /// Whether bytes may stand for no character, so that text into which halves of characters are
    /// put has to be wide text (base/Utf8.h).
    virtual bool HasStrayBytes() const = 0;

    /// The code of one character, that of kSubstitute when a page of single bytes lacks it.
    /// In UTF-8 it is that of the 16-bit unit itself.
    virtual int CodeOf(char16_t character) const = 0;

    /// The bytes by which `text` can be found in, and put into, the bytes of texts of this page,
    /// with the same result as if they were characters. Nothing when the page lacks one of its
    /// characters, or when it holds half a character or a stray byte.
    virtual std::optional<std::string> SearchableBytes(std::u16string_view text) const = 0;

    /// Whether the bytes of a text can be changed several times over, each time by finding and
    /// replacing SearchableBytes, with the same result as if they were characters: not when taking
    /// something out may bring parts together that make a new character.
    virtual bool IsExactInBytes(std::string_view bytes) const = 0;

    /// The stretch of `most` units at the beginning of `bytes`; see MeasureUtf8 for what else it
    /// may be. With `more`, the text goes on where the bytes end.
    virtual TextStretch Measure(std::string_view bytes, std::size_t most, bool more) const = 0;
};

/// Whether a character of `text` has a code below 32, from 127 to 159, or 63 (which is "?" and
/// whatever the page lacks) in the code page.
bool HasUnusualCharacters(std::u16string_view text, const CodePage& page);

/// A page that users can choose, and the languages it is for.
struct ChoosableCodePage {
    std::u16string_view name;
    std::u16string_view languages;
};
std::span<const ChoosableCodePage> ChoosableCodePages();

/// The page of that name: UTF-8, or one that MakeSingleByteCodePage makes. Case, hyphens and the
/// like do not matter. Throws Failure.
std::unique_ptr<const CodePage> MakeCodePage(std::u16string_view name);

/// Makes a single-byte page from ICU's table of that name. The table is one to one: bytes 80 to 9F
/// without a character of their own are the control characters of the same value, and any other
/// byte b without one, or with the character of a lower byte, is U+F700 + b. Throws Failure when
/// there is no such page, when it is not single-byte, or when bytes 00 to 7F are not ASCII.
std::unique_ptr<const CodePage> MakeSingleByteCodePage(std::u16string_view name);

/// UTF-8 without a mark: bytes that are not UTF-8 are lone surrogates (base/Utf8.h) and come out
/// as they went in.
std::unique_ptr<const CodePage> MakeUtf8CodePage();

/// ICU's name of the page that goes with a user's language, given as a POSIX locale such as
/// "de_DE.UTF-8": "windows-1252" for all languages that have no page of their own.
std::u16string_view CodePageForLocale(std::string_view locale);

/// The same for the locale of the environment (LC_ALL, LC_CTYPE, LANG: the first that is set).
std::u16string_view CodePageOfEnvironment();

/// Which code page is in force for all text without mark. Process-wide: made once and handed to all
/// that need it.
class AnsiCodePage {
public:
    explicit AnsiCodePage(std::u16string_view name) { Choose(name); }

    /// The page; it stays for whoever reads by it even when another one is chosen meanwhile.
    const CodePage& Page() const { return *page_; }

    /// Puts another page in force, from the next file on that is read; throws Failure and keeps
    /// the present one when it is refused.
    void Choose(std::u16string_view name);

    /// A number that every choice raises.
    std::uint64_t Revision() const { return revision_; }

private:
    std::vector<std::unique_ptr<const CodePage>> made_; // one of each
    const CodePage* page_ = nullptr;
    std::uint64_t revision_ = 0;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vexmarrow {

/// What becomes of a character that a code page lacks, one per 16-bit unit.
inline constexpr char kLackingCharacter = '?';

/// The relation between the bytes of a text without mark and 16-bit characters. Every byte
/// sequence decodes, and encoding what was decoded gives the same bytes.
class CodePage {
public:
    virtual ~CodePage() = default;

    /// The name by which the page was asked for.
    virtual std::u16string_view Name() const = 0;

    /// Appends the characters of `bytes` to `text`.
    virtual void Decode(std::string_view bytes, std::u16string& text) const = 0;

    /// Appends the bytes of `text` to `bytes`, kLackingCharacter for what the page lacks.
    virtual void Encode(std::u16string_view text, std::string& bytes) const = 0;

    /// The code of one character, that of kLackingCharacter when the page lacks it.
    virtual int CodeOf(char16_t character) const = 0;
};

/// Makes a single-byte page from ICU's table of that name. The table is one to one: bytes 80 to 9F
/// without a character of their own are the control characters of the same value, and any other
/// byte b without one, or with the character of a lower byte, is U+F700 + b. Throws Failure when
/// there is no such page, when it is not single-byte, or when bytes 00 to 7F are not ASCII.
std::unique_ptr<const CodePage> MakeSingleByteCodePage(std::u16string_view name);

/// ICU's name of the page that goes with a user's language, given as a POSIX locale such as
/// "de_DE.UTF-8": "windows-1252" for all languages that have no page of their own.
std::u16string_view CodePageForLocale(std::string_view locale);

/// The same for the locale of the environment (LC_ALL, LC_CTYPE, LANG: the first that is set).
std::u16string_view CodePageOfEnvironment();

/// The code page in force for all text without mark: process-wide, made once.
class AnsiCodePage {
public:
    explicit AnsiCodePage(std::u16string_view name);

    const CodePage& Page() const { return *page_; }

    /// Puts another page in force; throws Failure and keeps the present one when it is refused.
    void Choose(std::u16string_view name) {
        page_ = MakeSingleByteCodePage(name);
        ++revision_;
    }

    /// A number that every choice raises.
    std::uint64_t Revision() const { return revision_; }

private:
    std::unique_ptr<const CodePage> page_;
    std::uint64_t revision_ = 0;
};

} // namespace vexmarrow

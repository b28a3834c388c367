// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/CodePage.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace vexmarrow {
namespace {

constexpr std::size_t kBytes = 256;
using ByteTable = std::array<char16_t, kBytes>;

struct ConverterCloser {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

/// ICU's character for a byte; nothing if the byte is unassigned.
std::optional<char16_t> CharacterOf(UConverter* converter, std::uint8_t byte) {
    const char source = static_cast<char>(byte);
    std::array<char16_t, 4> target{};
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t count = ucnv_toUChars(
        converter, target.data(), static_cast<std::int32_t>(target.size()), &source, 1, &error);
    if (U_FAILURE(error) || count != 1) {
        return std::nullopt;
    }
    return target[0];
}

class SingleByteCodePage final : public CodePage {
public:
    SingleByteCodePage(std::u16string_view name, const ByteTable& table)
        : name_(name), decode_(table) {
        for (std::size_t byte = 0; byte < kBytes; ++byte) {
            encode_[decode_[byte]] = static_cast<char>(byte);
        }
    }

    std::u16string_view Name() const override { return name_; }

    void Decode(std::string_view bytes, std::u16string& text) const override {
        const std::size_t start = text.size();
        text.resize(start + bytes.size());
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            text[start + i] = decode_[static_cast<std::uint8_t>(bytes[i])];
        }
    }

    void Encode(std::u16string_view text, std::string& bytes) const override {
        const std::size_t start = bytes.size();
        bytes.resize(start + text.size());
        for (std::size_t i = 0; i < text.size(); ++i) {
            bytes[start + i] = ByteOf(text[i]);
        }
    }

    std::string_view FromUtf8(std::string_view utf8, std::string& room) const override {
        std::size_t same = AsciiLength(utf8);
        if (same == utf8.size()) {
            return utf8;
        }
        room.clear();
        std::u16string text;
        for (std::size_t at = 0;;) {
            room.append(utf8, at, same);
            at += same;
            if (at == utf8.size()) {
                return room;
            }
            std::size_t end = at;
            while (end < utf8.size() && static_cast<std::uint8_t>(utf8[end]) >= 0x80) {
                ++end;
            }
            text.clear();
            DecodeUtf8(utf8.substr(at, end - at), text);
            Encode(text, room);
            at = end;
            same = AsciiLength(utf8.substr(at));
        }
    }

    bool HasStrayBytes() const override { return false; }

    int CodeOf(char16_t character) const override {
        return static_cast<std::uint8_t>(ByteOf(character));
    }

    std::optional<std::string> SearchableBytes(std::u16string_view text) const override {
        std::string bytes;
        Encode(text, bytes);
        std::u16string again;
        Decode(bytes, again);
        return again == text ? std::optional(std::move(bytes)) : std::nullopt;
    }

    bool IsExactInBytes(std::string_view /*bytes*/) const override { return true; }

    TextStretch Measure(std::string_view bytes, std::size_t most, bool /*more*/) const override {
        const std::size_t count = std::min(bytes.size(), most);
        return {count, count};
    }

private:
    /// encode_ holds zero for U+0000 and for every character that the page lacks.
    char ByteOf(char16_t character) const {
        const char byte = encode_[character];
        return byte == 0 && character != 0 ? kSubstitute : byte;
    }

    std::u16string name_;
    ByteTable decode_;
    std::array<char, 0x10000> encode_{};
};

Failure Refused(std::u16string_view name, std::u16string_view reason) {
    return Failure(Concat(u"The code page \"", name, u"\" cannot be used: ", reason, u"."));
}

constexpr std::u16string_view kUtf8 = u"UTF-8";

constexpr std::array kChoosable{
    ChoosableCodePage{u"windows-1250", u"Central European"},
    ChoosableCodePage{u"windows-1251", u"Cyrillic"},
    ChoosableCodePage{u"windows-1252", u"Western European"},
    ChoosableCodePage{u"windows-1253", u"Greek"},
    ChoosableCodePage{u"windows-1254", u"Turkish"},
    ChoosableCodePage{u"windows-1255", u"Hebrew"},
    ChoosableCodePage{u"windows-1256", u"Arabic"},
    ChoosableCodePage{u"windows-1257", u"Baltic"},
    ChoosableCodePage{u"windows-1258", u"Vietnamese"},
    ChoosableCodePage{u"windows-874", u"Thai"},
    ChoosableCodePage{kUtf8, u"all languages"},
};

/// Whether ICU takes all of `name` for a name. It stops at a NUL and reads options after a comma.
bool IsPlain(std::string_view name) {
    return name.find_first_of(std::string_view("\0,", 2)) == std::string_view::npos;
}

/// ICU's own name for a converter that is given by any of its aliases; empty if ICU knows none.
std::string_view ConverterName(std::u16string_view name) {
    UErrorCode error = U_ZERO_ERROR;
    const std::string icuName = NativeName(name);
    const char* const canonical = ucnv_getAlias(icuName.c_str(), 0, &error);
    const bool isKnown = U_SUCCESS(error) && canonical != nullptr;
    return isKnown && IsPlain(icuName) ? canonical : "";
}

/// The name of a page in ChoosableCodePages, given by any of its aliases; else `name` itself.
std::u16string_view UsualName(std::u16string_view name) {
    const std::string_view converter = ConverterName(name);
    const auto* const found =
        std::find_if(kChoosable.begin(), kChoosable.end(), [&](const ChoosableCodePage& page) {
            return !converter.empty() && ConverterName(page.name) == converter;
        });
    return found != kChoosable.end() ? found->name : name;
}

/// The languages that have a page other than windows-1252.
struct PageLanguages {
    std::u16string_view page;
    std::string_view languages; // with a blank before and after each
};

constexpr std::array kPages{
    PageLanguages{u"windows-1250", " bs cs hr hu pl ro sk sl sq "},
    PageLanguages{u"windows-1251", " ba be bg kk ky mk mn ru sr tg tt uk "},
    PageLanguages{u"windows-1253", " el "},
    PageLanguages{u"windows-1254", " az tr uz "},
    PageLanguages{u"windows-1255", " he iw yi "},
    PageLanguages{u"windows-1256", " ar fa ps ug ur "},
    PageLanguages{u"windows-1257", " et lt lv "},
    PageLanguages{u"windows-1258", " vi "},
    PageLanguages{u"windows-874", " th "},
};

} // namespace

bool HasUnusualCharacters(std::u16string_view text, const CodePage& page) {
    return std::any_of(text.begin(), text.end(), [&](char16_t character) {
        const int code = page.CodeOf(character);
        return code < 32 || code == kSubstitute || (code >= 127 && code <= 159);
    });
}

std::span<const ChoosableCodePage> ChoosableCodePages() {
    return kChoosable;
}

std::unique_ptr<const CodePage> MakeCodePage(std::u16string_view name) {
    return UsualName(name) == kUtf8 ? MakeUtf8CodePage() : MakeSingleByteCodePage(name);
}

std::unique_ptr<const CodePage> MakeSingleByteCodePage(std::u16string_view name) {
    const std::string icuName = NativeName(name);
    UErrorCode error = U_ZERO_ERROR;
    // For an empty name ICU opens its default converter, but an empty name names no page.
    const Converter converter(icuName.empty() ? nullptr : ucnv_open(icuName.c_str(), &error));
    if (converter == nullptr || U_FAILURE(error) || !IsPlain(icuName)) {
        throw Refused(name, u"there is no code page of this name");
    }
    if (ucnv_getMaxCharSize(converter.get()) != 1) {
        throw Refused(name, u"it has characters of more than one byte");
    }
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);

    ByteTable table{};
    std::array<bool, 0x10000> taken{};
    for (std::size_t i = 0; i < kBytes; ++i) {
        const auto byte = static_cast<std::uint8_t>(i);
        std::optional<char16_t> character = CharacterOf(converter.get(), byte);
        if (i < 0x80 && character != static_cast<char16_t>(i)) {
            throw Refused(name, u"its bytes 00 to 7F are not ASCII");
        }
        if (!character && i <= 0x9F) {
            character = static_cast<char16_t>(i);
        }
        if (!character || taken[*character]) {
            character = static_cast<char16_t>(0xF700 + i);
        }
        if (taken[*character]) {
            throw Refused(name, u"two of its bytes stand for the same character");
        }
        taken[*character] = true;
        table[i] = *character;
    }
    return std::make_unique<SingleByteCodePage>(UsualName(name), table);
}

std::u16string_view CodePageForLocale(std::string_view locale) {
    const std::string_view language = locale.substr(0, locale.find_first_of("_.@"));
    if (language == "sr" && locale.find("@latin") != std::string_view::npos) {
        return u"windows-1250";
    }
    std::string word(1, ' ');
    word.append(language).push_back(' ');
    for (const PageLanguages& row : kPages) {
        if (row.languages.find(word) != std::string_view::npos) {
            return row.page;
        }
    }
    return u"windows-1252";
}

std::u16string_view CodePageOfEnvironment() {
    for (const char* const variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        // Called when the program starts, before anything can change the environment.
        const char* const value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe)
        if (value != nullptr && *value != '\0') {
            return CodePageForLocale(value);
        }
    }
    return u"windows-1252";
}

void AnsiCodePage::Choose(std::u16string_view name) {
    const std::u16string_view usual = UsualName(name);
    auto same = std::find_if(made_.begin(), made_.end(),
                             [&](const auto& page) { return page->Name() == usual; });
    if (same == made_.end()) {
        same = made_.insert(made_.end(), MakeCodePage(name));
    }
    page_ = same->get();
    ++revision_;
}

} // namespace vexmarrow

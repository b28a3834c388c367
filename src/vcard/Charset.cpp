// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/Charset.h"

#include "base/Utf8.h"
#include "textio/CodePage.h"
#include "vcard/Ascii.h"
#include "vcard/TextSource.h"

#include <unicode/ucnv.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <utility>

namespace vexmarrow::vcard {
namespace {

class Utf8Charset final : public Charset {
public:
    void Decode(std::string_view bytes, std::size_t base, DecodedText& decoded) const override {
        for (std::size_t at = 0; at < bytes.size() && decoded.room > 0;) {
            if (const std::size_t ascii = AsciiLength(bytes.substr(at)); ascii > 0) {
                at += decoded.AppendAscii(bytes.substr(at, ascii), base + at);
                continue;
            }
            const Unit unit = Utf8UnitAt(bytes, at);
            decoded.Append(unit.value, base + at);
            at += unit.length;
        }
    }

    bool Encode(char32_t unit, std::string& bytes) const override {
        const bool has = unit < kStray && !IsHighHalf(unit) && !IsLowHalf(unit);
        if (has) {
            AppendUnit(unit, bytes);
        }
        return has;
    }

    bool IsUtf8() const override { return true; }
};

class UnitsCharset final : public Charset {
public:
    explicit UnitsCharset(bool joinsHalves) : joinsHalves_(joinsHalves) {}

    void Decode(std::string_view bytes, std::size_t base, DecodedText& decoded) const override {
        for (std::size_t at = 0; at < bytes.size() && decoded.room > 0;) {
            const std::size_t begin = at;
            Unit unit = UnitAt(bytes, at);
            at += unit.length;
            if (joinsHalves_ && IsHighHalf(unit.value) && at < bytes.size()) {
                if (const Unit next = UnitAt(bytes, at); IsLowHalf(next.value)) {
                    unit.value = JoinHalves(unit.value, next.value);
                    at += next.length;
                }
            }
            decoded.Append(unit.value, base + begin);
        }
    }

    bool Encode(char32_t unit, std::string& bytes) const override {
        AppendUnit(unit, bytes);
        return true;
    }

    bool IsUtf8() const override { return true; }

private:
    bool joinsHalves_;
};

constexpr std::size_t kBytes = 256;
using ByteTable = std::array<char32_t, kBytes>; // the unit of each byte

class TableCharset final : public Charset {
public:
    explicit TableCharset(const ByteTable& table) : table_(table) {}

    void Decode(std::string_view bytes, std::size_t base, DecodedText& decoded) const override {
        for (std::size_t at = 0; at < bytes.size() && decoded.room > 0; ++at) {
            if (const std::size_t ascii = AsciiLength(bytes.substr(at)); ascii > 0) {
                at += decoded.AppendAscii(bytes.substr(at, ascii), base + at) - 1;
                continue;
            }
            decoded.Append(table_[static_cast<unsigned char>(bytes[at])], base + at);
        }
    }

    bool Encode(char32_t unit, std::string& bytes) const override {
        if (unit < 0x80) {
            bytes.push_back(static_cast<char>(unit));
            return true;
        }
        const auto* const found = std::find(table_.begin(), table_.end(), unit);
        const bool has = found != table_.end() && unit < kStray;
        if (has) {
            bytes.push_back(static_cast<char>(found - table_.begin()));
        }
        return has;
    }

private:
    ByteTable table_;
};

struct CloseConverter {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

/// Decodes the first unit of `bytes`. Its value is kStray if its bytes stand for no character.
Unit NextOf(UConverter* converter, std::string_view bytes) {
    ucnv_resetToUnicode(converter);
    UErrorCode error = U_ZERO_ERROR;
    const char* source = bytes.data();
    const UChar32 unit = ucnv_getNextUChar(converter, &source, bytes.data() + bytes.size(), &error);
    const auto length = static_cast<std::size_t>(source - bytes.data());
    constexpr std::size_t kLongest = 8;
    const bool isWhole = U_SUCCESS(error) && length <= kLongest;
    return {isWhole ? static_cast<char32_t>(unit) : kStray,
            static_cast<std::uint8_t>(std::clamp<std::size_t>(length, 1, kLongest))};
}

/// A charset without states in which a character has one byte or more.
class SeveralBytesCharset final : public Charset {
public:
    explicit SeveralBytesCharset(Converter converter) : converter_(std::move(converter)) {}

    void Decode(std::string_view bytes, std::size_t base, DecodedText& decoded) const override {
        for (std::size_t at = 0; at < bytes.size() && decoded.room > 0;) {
            const auto first = static_cast<unsigned char>(bytes[at]);
            const Unit unit =
                first < 0x80 ? Unit{first, 1} : NextOf(converter_.get(), bytes.substr(at));
            if (unit.value != kStray) {
                decoded.Append(unit.value, base + at);
            }
            for (std::size_t i = at;
                 unit.value == kStray && i < at + unit.length && decoded.room > 0; ++i) {
                decoded.Append(kStray + static_cast<unsigned char>(bytes[i]), base + i);
            }
            at += unit.length;
        }
    }

    bool Encode(char32_t unit, std::string& bytes) const override {
        if (unit >= kStray) {
            return false;
        }
        if (unit < 0x80) {
            bytes.push_back(static_cast<char>(unit));
            return true;
        }
        std::array<UChar, 2> units{};
        std::int32_t count = 0;
        U16_APPEND_UNSAFE(units, count, unit);
        UErrorCode error = U_ZERO_ERROR;
        std::array<char, 16> room{};
        const std::int32_t length = ucnv_fromUChars(converter_.get(), room.data(), room.size(),
                                                    units.data(), count, &error);
        if (U_FAILURE(error)) {
            return false;
        }
        bytes.append(room.data(), static_cast<std::size_t>(length));
        return true;
    }

private:
    Converter converter_;
};

/// Whether a charset's name may hold this byte.
bool IsOfNames(char sign) {
    return IsLetterOrDigit(sign) ||
           std::string_view("-_.:+ \t").find(sign) != std::string_view::npos;
}

/// Makes the charset of that name; null if values in it are not searched.
std::unique_ptr<const Charset> MakeCharset(const std::string& name) {
    UErrorCode error = U_ZERO_ERROR;
    Converter converter(ucnv_open(name.c_str(), &error));
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);
    ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                          &error);
    if (U_FAILURE(error)) {
        return nullptr;
    }
    const UConverterType type = ucnv_getType(converter.get());
    if (type == UCNV_UTF8) {
        return std::make_unique<Utf8Charset>();
    }
    if (type != UCNV_SBCS && type != UCNV_LATIN_1 && type != UCNV_US_ASCII && type != UCNV_MBCS) {
        return nullptr;
    }
    ByteTable table{};
    for (std::size_t i = 0; i < kBytes; ++i) {
        const auto byte = static_cast<char>(i);
        table[i] = NextOf(converter.get(), std::string_view(&byte, 1)).value;
        if (table[i] == kStray) {
            table[i] += static_cast<char32_t>(i);
        }
        const bool isPrintable = i >= ' ' && i <= '~';
        if (isPrintable && table[i] != i) {
            return nullptr;
        }
        if (i < 0x80) { // some old tables swap control characters
            table[i] = static_cast<char32_t>(i);
        }
    }
    if (type == UCNV_MBCS) {
        return std::make_unique<SeveralBytesCharset>(std::move(converter));
    }
    return std::make_unique<TableCharset>(table);
}

std::unique_ptr<const Charset> MakePageCharset(const CodePage& page) {
    ByteTable table{};
    for (std::size_t i = 0; i < kBytes; ++i) {
        const auto byte = static_cast<char>(i);
        std::u16string text;
        page.Decode(std::string_view(&byte, 1), text);
        table[i] = text.front();
    }
    return std::make_unique<TableCharset>(table);
}

} // namespace

Charsets::Charsets()
    : utf8_(std::make_unique<Utf8Charset>()),
      ofUtf16_(std::make_unique<UnitsCharset>(true)),
      ofUtf32_(std::make_unique<UnitsCharset>(false)) {}

const Charset* Charsets::Named(std::string_view name) {
    // The library ignores other bytes, stops at a NUL and reads options after a comma.
    if (!std::all_of(name.begin(), name.end(), IsOfNames)) {
        return nullptr;
    }
    UErrorCode error = U_ZERO_ERROR;
    const char* const usual = ucnv_getAlias(std::string(name).c_str(), 0, &error);
    if (U_FAILURE(error) || usual == nullptr || name.empty()) {
        return nullptr;
    }
    auto found = named_.find(std::string_view(usual));
    if (found == named_.end()) {
        found = named_.emplace(usual, MakeCharset(usual)).first;
    }
    return found->second.get();
}

FileCharsets Charsets::OfFile(EncodingMark mark, const CodePage& page) {
    if (page_ != &page) {
        ofPage_ = page.HasStrayBytes() ? std::make_unique<Utf8Charset>() : MakePageCharset(page);
        page_ = &page;
    }
    const Charset* const file = !IsWide(mark) ? utf8_.get()
                                : mark == EncodingMark::Utf16Le || mark == EncodingMark::Utf16Be
                                    ? ofUtf16_.get()
                                    : ofUtf32_.get();
    return {file, ofPage_.get(), utf8_.get(), mark != EncodingMark::None};
}

} // namespace vexmarrow::vcard

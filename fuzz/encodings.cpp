// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Utf8.h"
#include "fuzz/Fuzz.h"
#include "textio/CodePage.h"

#include <unicode/ustring.h>

#include <iterator>

// Converting between bytes and characters: code pages, UTF-8 as text, and UTF-8 in file names.

namespace vexmarrow::fuzz {
namespace {

void TryPage(const CodePage& page, std::string_view bytes, const std::u16string& text) {
    std::u16string decoded;
    page.Decode(bytes, decoded);
    std::string encoded;
    page.Encode(decoded, encoded);
    Require(encoded == bytes, "bytes come back from their characters");
    const std::u16string readable = TextFromUtf8(bytes);
    std::string room;
    std::string fromUtf8;
    const std::string_view utf8 = WellFormedUtf8(bytes, room);
    Require(utf8 == NativeName(readable), "the well-formed bytes are the text");
    encoded.clear();
    page.Encode(readable, encoded);
    Require(page.FromUtf8(utf8, fromUtf8) == encoded, "UTF-8 goes into a page as its text does");
    if (page.Name() == u"UTF-8") {
        Require(page.SearchableBytes(decoded).has_value() == page.IsExactInBytes(bytes),
                "a text without stray bytes can be found in its bytes, and no other can");
        return;
    }
    encoded.clear();
    decoded.clear();
    page.Encode(text, encoded);
    page.Decode(encoded, decoded);
    Require(encoded.size() == text.size(), "a 16-bit character becomes a byte");
    for (std::size_t i = 0; i < text.size(); ++i) {
        Require(decoded[i] == text[i] || (decoded[i] == u'?' && text[i] >= 0x80),
                "a character comes back unless the page lacks it; no page lacks ASCII");
        Require(page.CodeOf(text[i]) == static_cast<std::uint8_t>(encoded[i]),
                "the code of a character is its byte");
    }
}

std::u16string ByIcu(std::string_view bytes) {
    std::u16string text(bytes.size() + 1, u'\0');
    std::int32_t length = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8WithSub(text.data(), static_cast<std::int32_t>(text.size()), &length, bytes.data(),
                         static_cast<std::int32_t>(bytes.size()), 0xFFFD, nullptr, &error);
    return text.substr(0, static_cast<std::size_t>(length));
}

} // namespace

void TryInput(Input input) {
    static const AnsiCodePage pages[] = {
        AnsiCodePage(u"windows-1252"), AnsiCodePage(u"windows-1255"), AnsiCodePage(u"windows-874"),
        AnsiCodePage(u"iso-8859-6"),   AnsiCodePage(u"us-ascii"),     AnsiCodePage(u"UTF-8")};
    const AnsiCodePage& ansi = pages[input.Byte() % std::size(pages)];
    const std::string_view bytes = input.Rest();
    TryPage(ansi.Page(), bytes, input.Text());
    const std::u16string text = TextFromUtf8(bytes);
    Require(text == ByIcu(bytes), "each malformed part is one U+FFFD, all else stays");
    Require(TextFromUtf8(NativeName(text)) == text, "a text comes back from its bytes");
    const std::u16string name = TextFromNativeName(bytes);
    Require(NativeName(name) == bytes, "a name gives back its bytes");
    Require((name == text) == (NativeName(text) == bytes), "a well-formed name is a text");
}

} // namespace vexmarrow::fuzz

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// Replaces in contact cards for a checker that is written in another language. Reads cases from the
// standard input until its end and writes one result for each to the standard output. Numbers have
// four bytes, the low one first, and texts have their length before them. A case: the part (0
// fields, 1 values, 2 the whole line, 3 sets), the name of the code page, the find texts and the
// replace texts, each with their number before them, and the file. A result: the sentences that
// were reported, with their number before them, and the file that came out.

#include "engine/ReplaceText.h"
#include "support/Doubles.h"
#include "support/TestFolder.h"
#include "textio/CodePage.h"
#include "textio/RFTSFSO.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>

namespace vexmarrow::test {
namespace {

std::optional<std::uint32_t> ReadNumber() {
    std::array<unsigned char, 4> bytes{};
    if (std::fread(bytes.data(), 1, bytes.size(), stdin) != bytes.size()) {
        return std::nullopt;
    }
    return std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8U |
           std::uint32_t{bytes[2]} << 16U | static_cast<std::uint32_t>(bytes[3]) << 24U;
}

std::string ReadText() {
    std::string text(ReadNumber().value(), '\0');
    text.resize(std::fread(text.data(), 1, text.size(), stdin));
    return text;
}

/// Halves of characters come as UTF-8 would have them.
std::u16string Units(const std::string& text) {
    std::u16string units;
    for (std::size_t i = 0; i < text.size();) {
        if (text.compare(i, 1, "\xED") == 0 && static_cast<unsigned char>(text.at(i + 1)) >= 0xA0) {
            const auto bits = [&](std::size_t at) {
                return static_cast<unsigned char>(text.at(at)) & 0x3FU;
            };
            units.push_back(static_cast<char16_t>(0xD000U | bits(i + 1) << 6U | bits(i + 2)));
            i += 3;
            continue;
        }
        const std::size_t end = std::min(text.find('\xED', i + 1), text.size());
        units += TextFromUtf8(text.substr(i, end - i));
        i = end;
    }
    return units;
}

std::vector<std::u16string> ReadTexts() {
    std::vector<std::u16string> texts(ReadNumber().value());
    for (std::u16string& text : texts) {
        text = Units(ReadText());
    }
    return texts;
}

void WriteNumber(std::size_t number) {
    for (unsigned shift = 0; shift < 32; shift += 8) {
        std::putchar(static_cast<int>(number >> shift & 0xFFU));
    }
}

void WriteText(const std::string& text) {
    WriteNumber(text.size());
    std::fwrite(text.data(), 1, text.size(), stdout);
}

std::u16string Lines(const std::vector<std::u16string>& texts) {
    std::u16string lines;
    for (const std::u16string& text : texts) {
        lines.append(&text == &texts.front() ? u"" : u"\r\n").append(text);
    }
    return lines;
}

void DoCase(std::uint32_t part) {
    static const TestFolder folder;
    static SystemCalls calls;
    static std::map<std::string, AnsiCodePage> pages;
    const std::string page = ReadText();
    const AnsiCodePage& ansi = pages.try_emplace(page, TextFromUtf8(page)).first->second;
    const std::vector<std::u16string> find = ReadTexts();
    const std::vector<std::u16string> replace = ReadTexts();
    folder.Write("case.vcf", ReadText());
    EncodingFlags flags;
    RFTSFSO textio(calls, flags, ansi);
    KeepingWriter writer;
    ScriptedPrompts prompts;
    ReplaceText engine(textio, writer, prompts);
    const OutputLocation beside{OutputLocation::BesideInput, u""};
    if (part == 3) {
        engine.ReplaceSetsInCards(folder.Path("case.vcf"), {find, replace}, beside);
    } else {
        engine.ReplaceTextInCards(folder.Path("case.vcf"), static_cast<vcard::LinePart>(part),
                                  Lines(find), Lines(replace), beside);
    }
    WriteNumber(prompts.boxes.size());
    for (const Box& box : prompts.boxes) {
        WriteText(NativeName(box.text));
    }
    WriteText(writer.result.value_or(""));
    std::fflush(stdout);
}

} // namespace
} // namespace vexmarrow::test

int main() try {
    while (const auto part = vexmarrow::test::ReadNumber()) {
        vexmarrow::test::DoCase(*part);
    }
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "card_tool: %s\n", failure.what());
    return 1;
}

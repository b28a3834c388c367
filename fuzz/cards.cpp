// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Text.h"
#include "engine/ReplaceText.h"
#include "fuzz/MemoryFile.h"
#include "support/Doubles.h"

#include <numeric>

// Replacing in contact cards: any bytes come out as they went in when nothing is found or all that
// was found is put back, and lines that are skimmed over are what a closer look takes them for.

namespace vexmarrow::fuzz {
namespace {

struct Pairs {
    Texts find;
    Texts replace;

    Pairs With(std::u16string_view text, std::u16string_view newText) const {
        Pairs more = *this;
        more.find.emplace_back(text);
        more.replace.emplace_back(newText);
        return more;
    }
};

/// Pairs that change much of most cards; the input chooses some of them.
constexpr std::pair<std::u16string_view, std::u16string_view> kTelling[] = {
    {u"a", u"bb"},     {u"e", u""},    {u" ", u"_"},   {u";", u" "},
    {u":", u""},       {u"=", u"=3"},  {u"N", u":N"},  {u"\u00E9", u"e"},
    {u"n", u"\u00E9"}, {u"R", u"\nR"}, {u"\\", u","},  {u"A", u"\u0416\U0001F600"},
    {u"O", u"\xD83D"}, {u"T", u"=\t"}, {u"P", u"END"}, {u"1", u"1234567890 1234567890 = 1234"}};

/// Half a character that a file does not have in whatever encoding: UTF-16 and UTF-32 alone can
/// spell it.
std::u16string HalfNotIn(std::string_view file) {
    for (char16_t half = 0xDC00;; ++half) {
        const char bytes[] = {static_cast<char>(half & 0xFF), static_cast<char>(half >> 8),
                              static_cast<char>(half & 0xFF)};
        if (file.find(std::string_view(bytes, 2)) == std::string_view::npos &&
            file.find(std::string_view(bytes + 1, 2)) == std::string_view::npos) {
            return {half};
        }
    }
}

/// Puts so much into the middle of a file that its rest lies where something else is read. Little
/// is found in that.
std::string Stretched(std::string bytes, std::uint8_t shape, std::size_t size) {
    constexpr std::string_view kFillings[] = {"M", "M:mmmmmmmmmmmmmmmmmmmmmmmm\r\n",
                                              "\r\n mmmmmmmmmmmmmmmmmmmm",
                                              "M=mmmmmmmmmmmmmmmmmm=\n"};
    const std::string_view filling = kFillings[shape % 4];
    std::string made;
    for (made.reserve(size + filling.size()); made.size() < size;) {
        made += filling;
    }
    return bytes.insert(std::min<std::size_t>(bytes.size(), shape), made);
}

struct Cards {
    explicit Cards(Input& input) : kind(input.Byte()), reader(input) {}

    /// What becomes of the file; nothing when reading it was made to fail, and only then.
    std::optional<std::string> Replaced(const Pairs& pairs) {
        reader.file.failed = false;
        prompts.boxes.clear();
        writer.result.reset();
        if (Part() == 3) {
            engine.ReplaceSetsInCards(kPath, {pairs.find, pairs.replace}, kElsewhere);
        } else {
            engine.ReplaceTextInCards(kPath, static_cast<vcard::LinePart>(Part()),
                                      Lines(pairs.find), Lines(pairs.replace), kElsewhere);
        }
        Require(prompts.boxes.size() == (reader.file.failed ? 1 : 0),
                "a read that fails is reported, and nothing else");
        Require(writer.result.has_value() != reader.file.failed, "a result is whole or none");
        Require(!reader.file.open, "the file is closed again");
        return writer.result;
    }

    void FindNothing() {
        const std::u16string half = HalfNotIn(reader.file.bytes);
        Pairs pairs;
        for (const std::u16string_view before : {u"", u"B", u":", u"=", u"\u00E9", u"\n"}) {
            if (pairs.find.empty() || kind / 4 % 2 != 0) {
                pairs = pairs.With(std::u16string(before) + half, u"?");
            }
        }
        const auto result = Replaced(pairs);
        Require(!result || *result == reader.file.bytes, "what nothing is found in stays");
    }

    void PutBack() {
        const std::u16string half = HalfNotIn(reader.file.bytes);
        const std::u16string_view letter = kTelling[kind / 16].first;
        if (letter == u"\\") { // what follows one is not found
            return;
        }
        const auto result = Replaced(Pairs().With(letter, half).With(half, letter));
        Require(!result || *result == reader.file.bytes, "what is put back stays");
    }

    std::size_t Part() const { return kind % 4; }

    static std::u16string Lines(const Texts& texts) {
        return std::accumulate(texts.begin() + 1, texts.end(), texts.front(),
                               [](const std::u16string& lines, const std::u16string& text) {
                                   return Concat(lines, kCrLf, text);
                               });
    }

    static inline const OutputLocation kElsewhere{OutputLocation::OneFolder, u"/elsewhere"};
    std::uint8_t kind;
    Reader reader;
    test::KeepingWriter writer;
    test::ScriptedPrompts prompts;
    ReplaceText engine{reader.textio, writer, prompts};
};

} // namespace

void TryInput(Input input) {
    // Large files take long: they are few, and few of those that a fuzzer makes of them.
    const std::string_view all = input.Rest();
    const unsigned sum = std::accumulate(all.begin(), all.end(), 0U);
    const unsigned chosen = input.Byte() * 256U + input.Byte();
    const std::uint8_t shape = input.Byte();
    const std::u16string drawn = TextFromUtf8(input.Bytes(shape % 8));
    Cards cards(input);
    std::string& file = cards.reader.file.bytes;
    const bool isLarge = sum % 16384 == 16383;
    file = isLarge              ? Stretched(std::string(input.Rest()), shape, 8'400'000)
           : sum % 1024 == 1023 ? Stretched(std::string(input.Rest()), shape, 65'520 + shape % 32)
                                : std::string(input.Rest());
    cards.FindNothing();
    cards.PutBack();

    const bool isNone = drawn.empty() || (cards.Part() != 3 && drawn.find(kCrLf) != drawn.npos);
    Pairs pairs = isNone ? Pairs() : Pairs().With(drawn, u"+");
    for (std::size_t i = 0; i < std::size(kTelling); ++i) {
        if ((chosen >> i & 1U) != 0) {
            pairs = pairs.With(kTelling[i].first, kTelling[i].second);
        }
    }
    if (pairs.find.empty()) {
        return;
    }
    const auto result = cards.Replaced(pairs);
    if (!result) {
        return;
    }
    // With a colon for itself, hardly a line is skimmed over. One that was coded would be written
    // plainly where something else in its line changes; fields have none.
    if (!isLarge && (cards.Part() == 0 || file.find('=') == std::string::npos)) {
        const auto closely = cards.Replaced(pairs.With(u":", u":"));
        Require(!closely || closely == result, "skimming and reading agree");
    }
    file = *result;
    cards.FindNothing();
}

} // namespace vexmarrow::fuzz

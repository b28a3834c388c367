// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Text.h"
#include "engine/ReplaceText.h"
#include "fuzz/MemoryFile.h"
#include "support/Doubles.h"

#include <numeric>

// Replacing in contact cards: a file stays the same if nothing is found or if all is put back, and
// skimming over lines gives the same result as reading them closely.

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

/// Pairs that change much in most cards. The input chooses some of them.
constexpr std::pair<std::u16string_view, std::u16string_view> kEffectivePairs[] = {
    {u"a", u"bb"},     {u"e", u""},    {u" ", u"_"},   {u";", u" "},
    {u":", u""},       {u"=", u"=3"},  {u"N", u":N"},  {u"\u00E9", u"e"},
    {u"n", u"\u00E9"}, {u"R", u"\nR"}, {u"\\", u","},  {u"A", u"\u0416\U0001F600"},
    {u"O", u"\xD83D"}, {u"T", u"=\t"}, {u"P", u"END"}, {u"1", u"1234567890 1234567890 = 1234"}};

/// Half a character that a file does not contain in any encoding; only UTF-16 and UTF-32 spell one.
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

/// Inserts a filling into a file, so that the bytes behind it meet other limits of the reader. The
/// pairs find little in the filling.
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

    /// Returns the result for the file; nothing if a read of the file failed, and only then.
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
        Require(!result || *result == reader.file.bytes, "a file in which nothing is found stays");
    }

    void PutBack() {
        const std::u16string half = HalfNotIn(reader.file.bytes);
        const std::u16string_view letter = kEffectivePairs[kind / 16].first;
        if (letter == u"\\") { // nothing is found directly after one
            return;
        }
        const auto result = Replaced(Pairs().With(letter, half).With(half, letter));
        Require(!result || *result == reader.file.bytes, "a file in which all is put back stays");
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
    // Long files take long, so only few inputs are stretched, chosen by a sum that variants change.
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
    for (std::size_t i = 0; i < std::size(kEffectivePairs); ++i) {
        if ((chosen >> i & 1U) != 0) {
            pairs = pairs.With(kEffectivePairs[i].first, kEffectivePairs[i].second);
        }
    }
    if (pairs.find.empty()) {
        return;
    }
    const auto result = cards.Replaced(pairs);
    if (!result) {
        return;
    }
    // A pair that replaces each colon by a colon keeps nearly all lines from being skimmed over. It
    // would also write coded colons of values plainly, so that only fields are compared then.
    if (!isLarge && (cards.Part() == 0 || file.find('=') == std::string::npos)) {
        const auto closely = cards.Replaced(pairs.With(u":", u":"));
        Require(!closely || closely == result, "skimming and reading agree");
    }
    file = *result;
    cards.FindNothing();
}

} // namespace vexmarrow::fuzz

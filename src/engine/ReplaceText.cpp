// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/ReplaceText.h"

#include "base/Text.h"
#include "engine/ChangedFile.h"
#include "engine/PreparedPairs.h"
#include "textio/CodePage.h"
#include "textio/RFTSFSO.h"
#include "vcard/CardText.h"

#include <array>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kNothing;

std::vector<std::u16string> LinesOf(std::u16string_view text) {
    const std::vector<std::u16string_view> lines = TextsOfLines(text);
    return {lines.begin(), lines.end()};
}

/// Cuts lines at their colons and puts them together again with one of the two sides replaced. The
/// value ends at the second colon, and the rest is lost.
template <typename Cascade>
class LineChange {
public:
    using View = typename Cascade::View;
    using Unit = typename View::value_type;

    LineChange(const Cascade& pair, bool inField) : pair_(pair), inField_(inField) {}

    template <typename Write>
    void operator()(View line, const Write& write) {
        const std::size_t colon = line.find(kColon.front());
        if (colon == View::npos) {
            Join(line, {}, {}, write);
            return;
        }
        const View rest = line.substr(colon + 1);
        const View field = line.substr(0, colon);
        const View data = rest.substr(0, rest.find(kColon.front()));
        if (inField_) {
            Join(Changed(field), kColon, data, write);
        } else {
            Join(field, kColon, Changed(data), write);
        }
    }

private:
    static constexpr std::array<Unit, 3> kUnits{':', '\r', '\n'};
    static constexpr View kColon{kUnits.data(), 1};
    static constexpr View kLineEnd{kUnits.data() + 1, 2};

    View Changed(View side) { return pair_.Apply(side, changed_) ? View(changed_) : side; }

    /// Joins the parts, which takes less time than to write each by itself, unless they are long.
    template <typename Write>
    void Join(View field, View colon, View data, const Write& write) {
        constexpr std::size_t kLong = 65'536;
        if (field.size() + data.size() > kLong) {
            write({field, colon, data, kLineEnd});
            return;
        }
        line_.assign(field).append(colon).append(data).append(kLineEnd);
        write({View(line_)});
    }

    const Cascade& pair_;
    bool inField_;
    std::basic_string<Unit> line_;
    std::basic_string<Unit> changed_;
};

/// What `work` makes of a file; a failure of its preparations is one before there is a result.
template <typename Work>
Outcome OutcomeOf(const StatementNumbers& numbers, Work&& work) {
    Outcome outcome;
    if (auto failure = FailureOf([&] { outcome = std::forward<Work>(work)(); })) {
        outcome.broken = Refusal{numbers.replace, std::move(*failure)};
    }
    return outcome;
}

/// Shows what went wrong with a file: one report when there is no result; else, for every piece or
/// line, the sentences that are due for each, and after them why it could not be written.
void Report(Trap& trap, const Outcome& outcome, const StatementNumbers& numbers,
            const std::vector<std::u16string>& dueForEach) {
    if (outcome.broken) {
        trap.Report(outcome.broken->line, outcome.broken->description);
        return;
    }
    if (dueForEach.empty() && !outcome.refused) {
        return;
    }
    for (std::uint64_t i = 0; i < outcome.count; ++i) {
        for (const std::u16string& sentence : dueForEach) {
            trap.Report(numbers.replace, sentence);
        }
        if (outcome.refused) {
            trap.Report(outcome.refused->line, outcome.refused->description);
        }
    }
}

/// Where the result takes the place of its input, one opening does for both.
InputFile::Use UseOf(std::u16string_view path, const OutputLocation& location) {
    return IsInPlace(path, location) ? InputFile::Use::ReadAndWrite : InputFile::Use::Read;
}

/// Calls `run` with the cascade that is quickest where the result is the same: bytes before
/// characters.
template <typename Run>
Outcome WithCascade(PreparedPairs& pairs, TextFormat format, const AnsiCodePage& ansi, Run&& run) {
    if (format == TextFormat::Utf8) {
        if (const Utf8Cascade* const cascade = pairs.OfUtf8()) {
            return run(*cascade);
        }
    } else if (format == TextFormat::Ansi) {
        if (const ByteCascade* const cascade = pairs.OfBytes(ansi)) {
            return run(*cascade);
        }
        if (ansi.Page().HasStrayBytes()) {
            return run(pairs.OfWideText());
        }
    }
    return run(pairs.OfCharacters());
}

} // namespace

std::vector<std::u16string_view> TextsOfLines(std::u16string_view box) {
    return Split(box, kCrLf);
}

/// Pairs with what they were made from.
class ReplaceText::Pairs {
public:
    /// The lines of two texts are the pairs. No replace text at all goes with every find line.
    void UseLines(std::u16string_view find, std::u16string_view replace) {
        if (IsNew(Kind::Lines, find, replace, 0)) {
            const std::vector<std::u16string> findLines = LinesOf(find);
            std::vector<std::u16string> replaceLines = LinesOf(replace);
            if (replace.empty()) {
                replaceLines.resize(findLines.size());
            }
            Make(findLines, replaceLines);
        }
    }

    /// Two texts are one pair.
    void UseWhole(std::u16string_view find, std::u16string_view replace) {
        if (IsNew(Kind::Whole, find, replace, 0)) {
            Make({&find_, 1}, {&replace_, 1});
        }
    }

    void UseSets(const SetTexts& sets) {
        if (IsNew(Kind::Sets, kNothing, kNothing, sets.revision) || sets.revision == 0) {
            Make(sets.find, sets.replace);
        }
    }

    PreparedPairs& Present() { return *prepared_; }

private:
    enum class Kind { None, Lines, Whole, Sets };

    bool IsNew(Kind kind, std::u16string_view find, std::u16string_view replace,
               std::uint64_t revision) {
        if (kind_ == kind && find_ == find && replace_ == replace && revision_ == revision) {
            return false;
        }
        kind_ = Kind::None; // until they are made: that can fail for want of memory
        find_ = find;
        replace_ = replace;
        revision_ = revision;
        next_ = kind;
        return true;
    }
    void Make(std::span<const std::u16string> find, std::span<const std::u16string> replace) {
        prepared_.emplace(find, replace);
        kind_ = next_;
    }

    Kind kind_ = Kind::None;
    Kind next_ = Kind::None;
    std::u16string find_;
    std::u16string replace_;
    std::uint64_t revision_ = 0;
    std::optional<PreparedPairs> prepared_;
};

ReplaceText::ReplaceText(RFTSFSO& textio, FileWriter& writer, Prompts& prompts)
    : textio_(textio),
      writer_(writer),
      prompts_(prompts),
      cards_(std::make_unique<vcard::CardText>()),
      pairs_(std::make_unique<Pairs>()) {}

ReplaceText::~ReplaceText() = default;

void ReplaceText::ReplaceTextInFile(const std::u16string& path, std::u16string_view find,
                                    std::u16string_view replace, const OutputLocation& location,
                                    std::int32_t /*index*/) {
    Trap trap(prompts_, u"ReplaceText.ReplaceTextInFile");
    const StatementNumbers numbers{.read = 1, .replace = 4, .outputPath = 5, .write = 6};
    std::optional<TextPieces> pieces;
    if (trap.Do(numbers.read,
                [&] { pieces.emplace(textio_.ReadChunksByStream(path, UseOf(path, location))); }) &&
        trap.Do(2, [&] { pairs_->UseLines(find, replace); })) {
        ReplaceInPieces(trap, pieces, location, numbers);
    }
}

void ReplaceText::ReplaceTextInFileCombo(const std::u16string& path, const SetTexts& sets,
                                         const OutputLocation& location, std::int32_t /*index*/) {
    Trap trap(prompts_, u"ReplaceText.ReplaceTextInFileCombo");
    const StatementNumbers numbers;
    std::optional<TextPieces> pieces;
    if (trap.Do(numbers.read,
                [&] { pieces.emplace(textio_.ReadTextChunks(path, UseOf(path, location))); }) &&
        trap.Do(numbers.replace, [&] { pairs_->UseSets(sets); })) {
        ReplaceInPieces(trap, pieces, location, numbers);
    }
}

void ReplaceText::ReplaceInPieces(Trap& trap, std::optional<TextPieces>& pieces,
                                  const OutputLocation& location, const StatementNumbers& numbers) {
    PreparedPairs& pairs = pairs_->Present();
    const auto run = [&]<typename Cascade>(const Cascade& cascade) {
        using View = typename Cascade::View;
        using Unit = typename View::value_type;
        TextResult result(textio_, writer_, &pieces->File());
        if constexpr (std::is_same_v<Cascade, Utf8Cascade>) {
            pieces->PartAfter(cascade.Borders());
        }
        std::basic_string<Unit> changed;
        return WriteChanged<Unit>(
            *pieces, result, location, numbers, [&](View piece, const auto& write) {
                write({cascade.Apply(piece, changed) ? View(changed) : piece});
            });
    };
    Outcome outcome = OutcomeOf(
        numbers, [&] { return WithCascade(pairs, pieces->Format(), textio_.Ansi(), run); });
    if (pieces->Format() == TextFormat::Utf8) { // one piece, in however many parts it came
        outcome.count = 1;
    }
    pieces.reset(); // a box may be open for hours, and the file is locked until it is closed
    Report(trap, outcome, numbers, pairs.Partnerless());
}

void ReplaceText::ReplaceTextInFileFieldOnly(const std::u16string& path, std::u16string_view find,
                                             std::u16string_view replace,
                                             const OutputLocation& location,
                                             std::int32_t /*index*/) {
    ReplaceInLines(u"ReplaceText.ReplaceTextInFileFieldOnly", Side::Field, path, find, replace,
                   location);
}

void ReplaceText::ReplaceTextInFileDataOnly(const std::u16string& path, std::u16string_view find,
                                            std::u16string_view replace,
                                            const OutputLocation& location,
                                            std::int32_t /*index*/) {
    ReplaceInLines(u"ReplaceText.ReplaceTextInFileDataOnly", Side::Data, path, find, replace,
                   location);
}

void ReplaceText::ReplaceInLines(std::u16string_view routine, Side side, const std::u16string& path,
                                 std::u16string_view find, std::u16string_view replace,
                                 const OutputLocation& location) {
    Trap trap(prompts_, routine);
    const StatementNumbers numbers;
    std::optional<TextLines> lines;
    if (!trap.Do(numbers.read,
                 [&] { lines.emplace(textio_.OpenTextLines(path, UseOf(path, location))); })) {
        return;
    }
    const auto run = [&]<typename Cascade>(const Cascade& pair) {
        TextResult result(textio_, writer_, &lines->File());
        return WriteChanged<typename Cascade::View::value_type>(
            *lines, result, location, numbers, LineChange<Cascade>(pair, side == Side::Field));
    };
    const Outcome outcome = OutcomeOf(numbers, [&] {
        pairs_->UseWhole(find, replace);
        return WithCascade(pairs_->Present(), lines->Format(), textio_.Ansi(), run);
    });
    lines.reset(); // a box may be open for hours, and the file is locked until it is closed
    Report(trap, outcome, numbers, {});
}

void ReplaceText::ReplaceTextInCards(const std::u16string& path, vcard::Part part,
                                     std::u16string_view find, std::u16string_view replace,
                                     const OutputLocation& location) {
    ReplaceInCards(u"ReplaceText.ReplaceTextInCards", path, part, location,
                   [&] { pairs_->UseLines(find, replace); });
}

void ReplaceText::ReplaceSetsInCards(const std::u16string& path, const SetTexts& sets,
                                     const OutputLocation& location) {
    ReplaceInCards(u"ReplaceText.ReplaceSetsInCards", path, vcard::Part::WholeLine, location,
                   [&] { pairs_->UseSets(sets); });
}

template <typename UsePairs>
void ReplaceText::ReplaceInCards(std::u16string_view routine, const std::u16string& path,
                                 vcard::Part part, const OutputLocation& location,
                                 UsePairs usePairs) {
    Trap trap(prompts_, routine);
    const StatementNumbers numbers;
    std::optional<InputFile> file;
    if (!trap.Do(numbers.read,
                 [&] { file.emplace(textio_.OpenBytes(path, UseOf(path, location))); }) ||
        !trap.Do(numbers.replace, usePairs)) {
        return;
    }
    PreparedPairs& pairs = pairs_->Present();
    Outcome outcome = OutcomeOf(numbers, [&] {
        TextResult result(textio_, writer_, &*file);
        const auto work = [&](const std::u16string& resultPath, int& /*line*/) {
            const auto write = [&](std::string_view bytes) {
                result.Write({bytes}, TextFormat::Ansi, resultPath, numbers.write);
            };
            cards_->Replace(*file, pairs.OfCards(), part, textio_.Ansi().Page(), write);
        };
        return WriteResult(*file, result, location, numbers, work);
    });
    outcome.count = 1; // in however many parts it came
    file.reset();      // a box may be open for hours, and the file is locked until it is closed
    Report(trap, outcome, numbers, pairs.Partnerless());
}

int ReplaceText::SizeOfNext(std::u16string_view path, const OutputLocation& location) {
    return textio_.FileSize2(path, UseOf(path, location));
}

void ReplaceText::Settle() noexcept {
    textio_.CloseOpenedFile();
    writer_.Settle();
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/ReplaceText.h"

#include "base/Text.h"
#include "engine/PreparedPairs.h"
#include "engine/WriteResult.h"
#include "textio/CodePage.h"
#include "textio/RFTSFSO.h"
#include "vcard/CardReplacer.h"

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

/// Replaces in the field or the value of lines. The value ends at the second colon; the text after
/// it is dropped.
template <typename Cascade>
class SideReplacer {
public:
    using View = typename Cascade::View;
    using Unit = typename View::value_type;

    SideReplacer(const Cascade& pair, bool inField) : pair_(pair), inField_(inField) {}

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

    /// Joins the parts unless they are long, because one write is faster than four.
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

/// The outcome of `work`. An exception counts as a failure of the statement `numbers.replace`.
template <typename Work>
Outcome OutcomeOf(const StatementNumbers& numbers, Work&& work) {
    Outcome outcome;
    if (auto failure = FailureOf([&] { outcome = std::forward<Work>(work)(); })) {
        outcome.workFailure = FailedStatement{numbers.replace, std::move(*failure)};
    }
    return outcome;
}

/// Shows the failures of a file: one report when there is no result; otherwise, for every piece or
/// line, the messages in `dueForEach` and then the reason why it could not be written. The file
/// must be closed before, because a box may be open for hours and an open file is locked.
void Report(Trap& trap, const Outcome& outcome, const StatementNumbers& numbers,
            const std::vector<std::u16string>& dueForEach) {
    if (outcome.workFailure) {
        trap.Report(outcome.workFailure->line, outcome.workFailure->description);
        return;
    }
    if (dueForEach.empty() && !outcome.writeFailure) {
        return;
    }
    for (std::uint64_t i = 0; i < outcome.count; ++i) {
        for (const std::u16string& sentence : dueForEach) {
            trap.Report(numbers.replace, sentence);
        }
        if (outcome.writeFailure) {
            trap.Report(outcome.writeFailure->line, outcome.writeFailure->description);
        }
    }
}

/// A result that replaces its input is written through the opening that reads it.
InputFile::Use UseOf(std::u16string_view path, const OutputLocation& location) {
    return IsInPlace(path, location) ? InputFile::Use::ReadAndWrite : InputFile::Use::Read;
}

/// Calls `run` with the fastest cascade that gives the right result: for bytes, else for
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

/// The prepared pairs of the last file, which are made again only when their texts change.
class ReplaceText::PairCache {
public:
    /// The pairs are the lines of two texts. An empty `replace` is the partner of every find line.
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

    /// The two texts are one pair.
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
        kind_ = Kind::None; // until Make succeeds, because memory may be short
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
      cards_(std::make_unique<vcard::CardReplacer>()),
      pairCache_(std::make_unique<PairCache>()) {}

ReplaceText::~ReplaceText() = default;

void ReplaceText::ReplaceTextInFile(const std::u16string& path, std::u16string_view find,
                                    std::u16string_view replace, const OutputLocation& location,
                                    std::int32_t /*index*/) {
    Trap trap(prompts_, u"ReplaceText.ReplaceTextInFile");
    const StatementNumbers numbers{.read = 1, .replace = 4, .outputPath = 5, .write = 6};
    std::optional<TextPieces> pieces;
    if (trap.Do(numbers.read,
                [&] { pieces.emplace(textio_.ReadChunksByStream(path, UseOf(path, location))); }) &&
        trap.Do(2, [&] { pairCache_->UseLines(find, replace); })) {
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
        trap.Do(numbers.replace, [&] { pairCache_->UseSets(sets); })) {
        ReplaceInPieces(trap, pieces, location, numbers);
    }
}

void ReplaceText::ReplaceInPieces(Trap& trap, std::optional<TextPieces>& pieces,
                                  const OutputLocation& location, const StatementNumbers& numbers) {
    PreparedPairs& pairs = pairCache_->Present();
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
    if (pieces->Format() == TextFormat::Utf8) { // a single piece, which was read in parts
        outcome.count = 1;
    }
    pieces.reset();
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
            *lines, result, location, numbers, SideReplacer<Cascade>(pair, side == Side::Field));
    };
    const Outcome outcome = OutcomeOf(numbers, [&] {
        pairCache_->UseWhole(find, replace);
        return WithCascade(pairCache_->Present(), lines->Format(), textio_.Ansi(), run);
    });
    lines.reset();
    Report(trap, outcome, numbers, {});
}

void ReplaceText::ReplaceTextInCards(const std::u16string& path, vcard::LinePart part,
                                     std::u16string_view find, std::u16string_view replace,
                                     const OutputLocation& location) {
    ReplaceInCards(u"ReplaceText.ReplaceTextInCards", path, part, location,
                   [&] { pairCache_->UseLines(find, replace); });
}

void ReplaceText::ReplaceSetsInCards(const std::u16string& path, const SetTexts& sets,
                                     const OutputLocation& location) {
    ReplaceInCards(u"ReplaceText.ReplaceSetsInCards", path, vcard::LinePart::WholeLine, location,
                   [&] { pairCache_->UseSets(sets); });
}

template <typename UsePairs>
void ReplaceText::ReplaceInCards(std::u16string_view routine, const std::u16string& path,
                                 vcard::LinePart part, const OutputLocation& location,
                                 UsePairs usePairs) {
    Trap trap(prompts_, routine);
    const StatementNumbers numbers;
    std::optional<InputFile> file;
    if (!trap.Do(numbers.read,
                 [&] { file.emplace(textio_.OpenBytes(path, UseOf(path, location))); }) ||
        !trap.Do(numbers.replace, usePairs)) {
        return;
    }
    PreparedPairs& pairs = pairCache_->Present();
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
    outcome.count = 1; // a single piece, which was written in parts
    file.reset();
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

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/ReplaceText.h"

#include "base/Text.h"
#include "engine/Cascade.h"
#include "shell/Trap.h"
#include "textio/RFTSFSO.h"
#include "textio/TextResult.h"

#include <new>
#include <optional>
#include <utility>
#include <vector>

namespace vexmarrow {
namespace {

// Numbers of the statements of a routine, as its error reports name them.
constexpr int kRead = 1;
struct Lines {
    int replace = 2;
    int outputPath = 3;
    int write = 4;
};

/// A failed statement whose report is still due.
struct Refusal {
    int line = 0;
    std::u16string description;
};

/// The result of one file, piece by piece or line by line. After a failure it only counts: the
/// report is due for every one of them.
class Output {
public:
    Output(const RFTSFSO& textio, FileWriter& writer, const InputFile& input,
           const OutputLocation& location, const Lines& lines)
        : result_(
              textio, writer,
              SourceFile{input.Path(), input.Status(), input.Number(), input.IsLockedByOther()}),
          lines_(lines) {
        Try(lines.outputPath, [&] { path_ = OutputPath(input.Path(), location); });
    }

    void Write(std::u16string_view text) {
        // 1 starts the file, any higher number goes on; a file may have more lines than numbers.
        const std::int32_t writeMode = count_++ == 0 ? 1 : 2;
        Try(lines_.write, [&] { result_.WriteTextFile(text, path_, writeMode); });
    }
    void Commit() {
        Try(lines_.write, [&] { result_.Commit(); });
    }

    std::uint64_t Count() const { return count_; }
    const std::optional<Refusal>& Refused() const { return refusal_; }

private:
    template <typename Statement>
    void Try(int line, Statement&& statement) {
        if (refusal_) {
            return;
        }
        if (std::optional<std::u16string> failure = FailureOf(std::forward<Statement>(statement))) {
            refusal_ = Refusal{line, std::move(*failure)};
            result_.Drop();
        }
    }

    TextResult result_;
    Lines lines_;
    std::u16string path_;
    std::uint64_t count_ = 0;
    std::optional<Refusal> refusal_;
};

/// Reads a file to its end, changes each piece or line and writes the result. What goes wrong
/// before the result is complete ends the work, nothing being written; otherwise `eachReport` is
/// called for every piece or line, and the report of a failed write shown after it.
template <typename Reader, typename Change, typename EachReport>
void WriteChanged(Trap& trap, Reader reader, const RFTSFSO& textio, FileWriter& writer,
                  const OutputLocation& location, const Lines& lines, const Change& change,
                  const EachReport& eachReport) {
    std::optional<Refusal> broken;
    std::optional<Refusal> refused;
    std::uint64_t count = 0;
    {
        // No box may open in here: the result holds the lock of its file.
        Output output(textio, writer, reader.File(), location, lines);
        int line = kRead;
        const std::optional<std::u16string> failure = FailureOf([&] {
            for (std::u16string text; line = kRead, reader.Next(text);) {
                line = lines.replace;
                change(text);
                output.Write(text);
            }
            if (!output.Refused()) { // then nothing is written in any case
                reader.Finish();
            }
            output.Commit();
        });
        if (failure) {
            broken = Refusal{line, *failure};
        }
        refused = output.Refused();
        count = output.Count();
    }
    if (broken) {
        trap.Report(broken->line, broken->description);
        return;
    }
    for (; count > 0; --count) {
        eachReport();
        if (refused) {
            trap.Report(refused->line, refused->description);
        }
    }
}

/// The pairs that the two lists make, and a sentence for each find text without a partner.
struct Pairing {
    std::vector<ReplacementPair> pairs;
    std::vector<std::u16string> partnerless;
};

/// As much of a text as a message needs to say which one is meant.
std::u16string Quoted(std::u16string_view text) {
    constexpr std::size_t kMost = 100;
    return Concat(u"\"", text.substr(0, kMost), text.size() > kMost ? u"..." : u"", u"\"");
}

template <typename Text>
Pairing Pair(std::span<const Text> find, std::span<const Text> replace) {
    Pairing pairing;
    for (std::size_t i = 0; i < find.size(); ++i) {
        if (i < replace.size()) {
            pairing.pairs.push_back({std::u16string(find[i]), std::u16string(replace[i])});
        } else {
            pairing.partnerless.push_back(
                Concat(u"Find text number ", Decimal(static_cast<long long>(i) + 1), u", ",
                       Quoted(find[i]), u", has no replace text: there are only ",
                       Decimal(static_cast<long long>(replace.size())), u"."));
        }
    }
    return pairing;
}

/// Steps shared by both whole-text routines, once the file is open.
void ReplaceInPieces(Trap& trap, TextPieces pieces, Pairing pairing, const RFTSFSO& textio,
                     FileWriter& writer, const OutputLocation& location, const Lines& lines) {
    const Cascade cascade(std::move(pairing.pairs));
    WriteChanged(
        trap, std::move(pieces), textio, writer, location, lines,
        [&](std::u16string& piece) { cascade.Apply(piece); },
        [&] {
            for (const std::u16string& sentence : pairing.partnerless) {
                trap.Report(lines.replace, sentence);
            }
        });
}

/// The two sides of a line; the value ends at the second colon and the rest is lost.
struct Sides {
    std::u16string field;
    std::u16string data;
};

std::optional<Sides> SidesOf(std::u16string_view line) {
    const std::size_t colon = line.find(u':');
    if (colon == std::u16string_view::npos) {
        return std::nullopt;
    }
    const std::u16string_view rest = line.substr(colon + 1);
    return Sides{std::u16string(line.substr(0, colon)),
                 std::u16string(rest.substr(0, rest.find(u':')))};
}

} // namespace

void ReplaceText::ReplaceTextInFile(const std::u16string& path, std::u16string_view find,
                                    std::u16string_view replace, const OutputLocation& location,
                                    std::int32_t /*index*/) {
    Trap trap(prompts_, u"ReplaceText.ReplaceTextInFile");
    std::optional<TextPieces> pieces;
    if (!trap.Do(kRead, [&] { pieces.emplace(textio_.ReadChunksByStream(path)); })) {
        return;
    }
    std::vector<std::u16string_view> findLines;
    std::vector<std::u16string_view> replaceLines;
    trap.Do(2, [&] { findLines = Split(find, kCrLf); });
    trap.Do(3, [&] {
        replaceLines = Split(replace, kCrLf);
        // No replace text at all goes with every find line.
        if (replace.empty()) {
            replaceLines.resize(findLines.size());
        }
    });
    const Lines lines{.replace = 4, .outputPath = 5, .write = 6};
    trap.Do(lines.replace, [&] {
        ReplaceInPieces(trap, std::move(*pieces),
                        Pair<std::u16string_view>(findLines, replaceLines), textio_, writer_,
                        location, lines);
    });
}

void ReplaceText::ReplaceTextInFileCombo(const std::u16string& path,
                                         std::span<const std::u16string> findList,
                                         std::span<const std::u16string> replaceList,
                                         const OutputLocation& location, std::int32_t /*index*/) {
    Trap trap(prompts_, u"ReplaceText.ReplaceTextInFileCombo");
    std::optional<TextPieces> pieces;
    if (!trap.Do(kRead, [&] { pieces.emplace(textio_.ReadTextChunks(path)); })) {
        return;
    }
    const Lines lines;
    trap.Do(lines.replace, [&] {
        ReplaceInPieces(trap, std::move(*pieces), Pair<std::u16string>(findList, replaceList),
                        textio_, writer_, location, lines);
    });
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

void ReplaceText::Settle() noexcept {
    writer_.Settle();
}

void ReplaceText::ReplaceInLines(std::u16string_view routine, Side side, const std::u16string& path,
                                 std::u16string_view find, std::u16string_view replace,
                                 const OutputLocation& location) {
    Trap trap(prompts_, routine);
    std::optional<TextLines> text;
    if (!trap.Do(kRead, [&] { text.emplace(textio_.OpenTextLines(path)); })) {
        return;
    }
    const Lines numbers;
    trap.Do(numbers.replace, [&] {
        const Cascade pair({{std::u16string(find), std::u16string(replace)}});
        WriteChanged(
            trap, std::move(*text), textio_, writer_, location, numbers,
            [&](std::u16string& line) {
                if (std::optional<Sides> sides = SidesOf(line)) {
                    pair.Apply(side == Side::Field ? sides->field : sides->data);
                    line = Concat(sides->field, u":", sides->data);
                }
                line += kCrLf;
            },
            [] {});
    });
}

} // namespace vexmarrow

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

/// A failed statement whose report is due for every piece or line of text.
struct Refusal {
    int line = 0;
    std::u16string description;
};

/// Writes the pieces as one file; what went wrong, if anything did.
std::optional<Refusal> WriteAll(const std::vector<std::u16string>& pieces,
                                const std::u16string& inputPath, const OutputLocation& location,
                                const Lines& lines, TextResult result) {
    int line = lines.outputPath;
    try {
        const std::u16string path = OutputPath(inputPath, location);
        line = lines.write;
        std::int32_t n = 0;
        for (const std::u16string& piece : pieces) {
            result.WriteTextFile(piece, path, ++n);
        }
        result.Commit();
        return std::nullopt;
    } catch (const Failure& failure) {
        return Refusal{line, failure.Description()};
    } catch (const std::bad_alloc&) {
        return Refusal{line, std::u16string(kOutOfMemory)};
    }
}

void ReportRefusal(Trap& trap, const std::optional<Refusal>& refusal) {
    if (refusal) {
        trap.Report(refusal->line, refusal->description);
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

/// Steps shared by both whole-text routines, once the pieces are read.
void ReplaceInPieces(Trap& trap, std::vector<std::u16string>& pieces, Pairing pairing,
                     const std::u16string& path, const OutputLocation& location, const Lines& lines,
                     TextResult result) {
    const Cascade cascade(std::move(pairing.pairs));
    for (std::u16string& piece : pieces) {
        cascade.Apply(piece);
    }
    const std::optional<Refusal> refusal =
        WriteAll(pieces, path, location, lines, std::move(result));
    for (std::size_t piece = 0; piece < pieces.size(); ++piece) {
        for (const std::u16string& sentence : pairing.partnerless) {
            trap.Report(lines.replace, sentence);
        }
        ReportRefusal(trap, refusal);
    }
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
    std::vector<std::u16string> pieces;
    if (!trap.Do(kRead, [&] { pieces = textio_.ReadChunksByStream(path); })) {
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
        ReplaceInPieces(trap, pieces, Pair<std::u16string_view>(findLines, replaceLines), path,
                        location, lines, TextResult(textio_, writer_));
    });
}

void ReplaceText::ReplaceTextInFileCombo(const std::u16string& path,
                                         std::span<const std::u16string> findList,
                                         std::span<const std::u16string> replaceList,
                                         const OutputLocation& location, std::int32_t /*index*/) {
    Trap trap(prompts_, u"ReplaceText.ReplaceTextInFileCombo");
    std::vector<std::u16string> pieces;
    if (!trap.Do(kRead, [&] { pieces = textio_.ReadTextChunks(path); })) {
        return;
    }
    const Lines lines;
    trap.Do(lines.replace, [&] {
        ReplaceInPieces(trap, pieces, Pair<std::u16string>(findList, replaceList), path, location,
                        lines, TextResult(textio_, writer_));
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

void ReplaceText::ReplaceInLines(std::u16string_view routine, Side side, const std::u16string& path,
                                 std::u16string_view find, std::u16string_view replace,
                                 const OutputLocation& location) {
    Trap trap(prompts_, routine);
    std::vector<std::u16string> text;
    if (!trap.Do(kRead, [&] { text = textio_.ReadTextLines(path); })) {
        return;
    }
    const Lines numbers;
    trap.Do(numbers.replace, [&] {
        const Cascade pair({{std::u16string(find), std::u16string(replace)}});
        for (std::u16string& line : text) {
            if (std::optional<Sides> sides = SidesOf(line)) {
                pair.Apply(side == Side::Field ? sides->field : sides->data);
                line = Concat(sides->field, u":", sides->data);
            }
            line += kCrLf;
        }
        const std::optional<Refusal> refusal =
            WriteAll(text, path, location, numbers, TextResult(textio_, writer_));
        for (std::size_t line = 0; line < text.size(); ++line) {
            ReportRefusal(trap, refusal);
        }
    });
}

} // namespace vexmarrow

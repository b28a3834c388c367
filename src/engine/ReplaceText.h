// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/OutputPath.h"
#include "vcard/LinePart.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

namespace vcard {
class CardReplacer;
}
class FileWriter;
class Prompts;
class RFTSFSO;
class TextPieces;
class Trap;
struct StatementNumbers;

/// The sets of a run.
struct SetTexts {
    std::span<const std::u16string> find;
    std::span<const std::u16string> replace;
    std::uint64_t revision = 0; ///< changes when the texts change; 0 means that it is not known
};

/// The lines of a box of the single pair, which CR LF separates. An empty box has none.
std::vector<std::u16string_view> TextsOfLines(std::u16string_view box);

/// The routines that change one input file and write its result.
///
/// Each reads the whole file, applies its pairs and writes the result to OutputPath, even when
/// nothing matched. Failures are shown as error reports, never thrown. A file that cannot be read
/// is reported once and left alone. The result is written as a whole, but a failed write is
/// reported once for each piece or line, as if each had been written separately. `index` is the
/// file's 1-based row, which no routine uses.
class ReplaceText {
public:
    ReplaceText(RFTSFSO& textio, FileWriter& writer, Prompts& prompts);
    ~ReplaceText();
    ReplaceText(const ReplaceText&) = delete;
    ReplaceText& operator=(const ReplaceText&) = delete;

    /// Whole text, single pair: the lines of `find` and `replace` (separated by CR LF) are the
    /// pairs. An empty `replace` deletes every find line; otherwise a find line without a replace
    /// line is skipped, and reported for every piece. Uses the encoding that was detected last.
    void ReplaceTextInFile(const std::u16string& path, std::u16string_view find,
                           std::u16string_view replace, const OutputLocation& location,
                           std::int32_t index);

    /// Whole text, sets: find text i is replaced with replace text i. Detects the encoding.
    void ReplaceTextInFileCombo(const std::u16string& path, const SetTexts& sets,
                                const OutputLocation& location, std::int32_t index);

    /// Fields: the part of each line before its first colon. `find` and `replace` are one pair.
    /// Text after a second colon is dropped, and every line ends with CR LF. Detects the encoding.
    void ReplaceTextInFileFieldOnly(const std::u16string& path, std::u16string_view find,
                                    std::u16string_view replace, const OutputLocation& location,
                                    std::int32_t index);

    /// Values: the same for the part of each line between its first and second colon.
    void ReplaceTextInFileDataOnly(const std::u16string& path, std::u16string_view find,
                                   std::u16string_view replace, const OutputLocation& location,
                                   std::int32_t index);

    /// Reads the file as contact cards (vcard/CardReplacer.h) and replaces in one part of each
    /// logical line. The pairs are those of ReplaceTextInFile, but a find line without a replace
    /// line is reported once. Neither uses nor changes the encoding flags.
    void ReplaceTextInCards(const std::u16string& path, vcard::LinePart part,
                            std::u16string_view find, std::u16string_view replace,
                            const OutputLocation& location);

    /// The same for sets, in whole logical lines.
    void ReplaceSetsInCards(const std::u16string& path, const SetTexts& sets,
                            const OutputLocation& location);

    /// FileSize2 of the next file. The routine that is called next will not open it again.
    int SizeOfNext(std::u16string_view path, const OutputLocation& location);

    /// Releases what was kept for the next file. To be called after the last file.
    void Settle() noexcept;

private:
    enum class Side { Field, Data };
    class PairCache;

    void ReplaceInPieces(Trap& trap, std::optional<TextPieces>& pieces,
                         const OutputLocation& location, const StatementNumbers& numbers);
    template <typename UsePairs>
    void ReplaceInCards(std::u16string_view routine, const std::u16string& path,
                        vcard::LinePart part, const OutputLocation& location, UsePairs usePairs);
    void ReplaceInLines(std::u16string_view routine, Side side, const std::u16string& path,
                        std::u16string_view find, std::u16string_view replace,
                        const OutputLocation& location);

    RFTSFSO& textio_;
    FileWriter& writer_;
    Prompts& prompts_;
    std::unique_ptr<vcard::CardReplacer> cards_;
    std::unique_ptr<PairCache> pairCache_;
};

} // namespace vexmarrow

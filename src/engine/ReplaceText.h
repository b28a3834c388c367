// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/OutputPath.h"
#include "vcard/Part.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

namespace vcard {
class CardText;
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
    std::uint64_t revision = 0; ///< another number for other texts; 0 is always another one
};

/// The texts that whole-text replacement takes from the box of the single pair: its lines, which CR
/// LF separates. An empty box has none.
std::vector<std::u16string_view> TextsOfLines(std::u16string_view box);

/// The four routines that change one input file and write its result.
///
/// Each reads the whole file, applies its pairs, writes the result to OutputPath (also when
/// nothing matched) and shows what failed as error reports; none returns or throws anything. A
/// file that cannot be read is reported once and left alone. The file is written once, in one
/// piece; a failed write is reported for every piece or line of text, in the order in which the
/// statements would have run if each had been written by itself. `index` is the file's 1-based
/// row, which no routine needs.
class ReplaceText {
public:
    ReplaceText(RFTSFSO& textio, FileWriter& writer, Prompts& prompts);
    ~ReplaceText();
    ReplaceText(const ReplaceText&) = delete;
    ReplaceText& operator=(const ReplaceText&) = delete;

    /// Whole text, single pair: the lines of `find` and `replace` (separated by CR LF) are the
    /// pairs. An empty `replace` deletes every find line; else a find line without a partner is
    /// reported for every piece and left out. The encoding is that of the last detection.
    void ReplaceTextInFile(const std::u16string& path, std::u16string_view find,
                           std::u16string_view replace, const OutputLocation& location,
                           std::int32_t index);

    /// Whole text, sets: find text i goes with replace text i. Detects the encoding.
    void ReplaceTextInFileCombo(const std::u16string& path, const SetTexts& sets,
                                const OutputLocation& location, std::int32_t index);

    /// The part of each line before its first colon. `find` and `replace` are one pair, taken
    /// whole. What follows a second colon is dropped; every line ends with CR LF. Detects the
    /// encoding.
    void ReplaceTextInFileFieldOnly(const std::u16string& path, std::u16string_view find,
                                    std::u16string_view replace, const OutputLocation& location,
                                    std::int32_t index);

    /// The same for the part of each line between its first and its second colon.
    void ReplaceTextInFileDataOnly(const std::u16string& path, std::u16string_view find,
                                   std::u16string_view replace, const OutputLocation& location,
                                   std::int32_t index);

    /// Reads the file as contact cards (vcard/CardText.h) and replaces in that part of each logical
    /// line. Whatever the part, the lines of `find` and `replace` are the pairs, as for
    /// ReplaceTextInFile; a find line without a partner is reported once. The encoding flags
    /// neither count nor change.
    void ReplaceTextInCards(const std::u16string& path, vcard::Part part, std::u16string_view find,
                            std::u16string_view replace, const OutputLocation& location);

    /// The same with sets, in whole logical lines.
    void ReplaceSetsInCards(const std::u16string& path, const SetTexts& sets,
                            const OutputLocation& location);

    /// FileSize2 of a file that one of the routines may be called for next: it is opened only once.
    int SizeOfNext(std::u16string_view path, const OutputLocation& location);

    /// To be called when the last file is done: gives back what was kept at hand for the next.
    void Settle() noexcept;

private:
    enum class Side { Field, Data };
    class Pairs;

    void ReplaceInPieces(Trap& trap, std::optional<TextPieces>& pieces,
                         const OutputLocation& location, const StatementNumbers& numbers);
    template <typename UsePairs>
    void ReplaceInCards(std::u16string_view routine, const std::u16string& path, vcard::Part part,
                        const OutputLocation& location, UsePairs usePairs);
    void ReplaceInLines(std::u16string_view routine, Side side, const std::u16string& path,
                        std::u16string_view find, std::u16string_view replace,
                        const OutputLocation& location);

    RFTSFSO& textio_;
    FileWriter& writer_;
    Prompts& prompts_;
    std::unique_ptr<vcard::CardText> cards_;
    std::unique_ptr<Pairs> pairs_; // those of the last file, which are mostly those of the next
};

} // namespace vexmarrow

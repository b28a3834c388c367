// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/Charset.h"
#include "vcard/LineChange.h"
#include "vcard/LineText.h"
#include "vcard/RawLine.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow::vcard {

class TextSource;

/// Writes changed logical lines. Units that stay are copied; new ones are written in the way in
/// which the part of the line around them is written.
class LineWriter {
public:
    LineWriter(const FileCharsets& charsets, const TextSource& file)
        : charsets_(charsets), file_(file) {}

    /// How to fold a line that has become too long.
    struct Folding {
        std::string_view lineEnd;
        std::function<bool()> isCardFolded; ///< whether this card has folded lines
    };

    /// Writes a changed line without its line end.
    void Write(const RawLine& line, const LineText& text, const LineChange& change,
               const Folding& folding);

    /// The bytes that were written, and the text that they should be read as. Both are valid until
    /// the next Write, and as long as the change.
    std::string_view Raw() const { return isPlain_ ? std::string_view(change_->Text()) : out_; }
    std::string_view Text() const {
        return isPlain_ ? std::string_view(change_->Text()) : expected_;
    }

private:
    /// A unit as it is written.
    struct Token {
        std::uint32_t at = 0;                    // in joined_
        std::uint32_t origin = LineChange::kNew; // its place in the old joined line
    };

    bool IsPlain() const;
    void WriteJoined(bool unitByUnit);
    void KeepUnits(std::size_t begin, std::size_t end, std::uint32_t origin, bool unitByUnit);
    void AddUnits(std::size_t begin, std::size_t end);
    void AddUnit(char32_t unit, bool inValue);
    void AddEncoded(char32_t unit, bool inValue);
    void TakeFoldsUpTo(std::size_t place);
    bool IsInValue(std::size_t place) const;
    std::string_view TokenBytes(std::size_t token) const;
    bool IsLiteralEquals(std::size_t token) const;

    void WritePhysicalLines();
    void AddToken(std::size_t token, std::size_t& fold);
    void EndPhysicalLine(const LineChange::KeptFold* fold, std::size_t tokens);
    void ProtectEnd(std::size_t oldEnd, std::size_t tokens);
    std::size_t OldLength(std::size_t last) const;
    bool NeedsBreak(std::size_t length, std::size_t lastOld) const;
    void BreakUp(std::size_t column, std::size_t left);

    FileCharsets charsets_;
    const TextSource& file_;
    const RawLine* line_ = nullptr;
    const LineText* text_ = nullptr;
    const LineChange* change_ = nullptr;
    const Folding* folding_ = nullptr;
    bool isQuoted_ = false;
    bool isPlain_ = false; // the bytes are the changed text

    std::string joined_; // the new line without folds
    std::vector<Token> tokens_;
    std::vector<LineChange::KeptFold> folds_; // in joined_
    std::size_t valueAt_ = 0;                 // the value's place in joined_
    std::string expected_;
    std::size_t nextKept_ = 0;  // the next fold that the change keeps
    std::size_t nextInner_ = 0; // the next old fold that may be inside a unit
    std::string bytes_;         // of one new unit

    std::string out_;
    std::string physical_;            // the physical line that is being written
    std::vector<std::size_t> breaks_; // where it may be broken, in bytes
    std::size_t firstOld_ = 0;        // the number of the first old physical line in it
    bool beginsWithBlank_ = false;    // with the blank of a fold
    std::string broken_;
};

} // namespace vexmarrow::vcard

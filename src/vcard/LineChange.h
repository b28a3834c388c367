// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/LinePart.h"
#include "vcard/LineText.h"
#include "vcard/Pairs.h"
#include "vcard/RawLine.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow::vcard {

/// The text of a logical line after the pairs have been applied, and where each part of it is from.
class LineChange {
public:
    static constexpr std::uint32_t kNew = 0xFFFFFFFF;

    /// A stretch of the changed text; it ends where the next one begins.
    struct Stretch {
        std::uint32_t begin = 0;
        std::uint32_t origin = kNew; ///< its place in the old text; kNew if a pair inserted it
    };

    /// A fold between two units of the changed text.
    struct KeptFold {
        std::uint32_t at = 0;     ///< its place in the changed text
        std::uint32_t number = 0; ///< which fold of the raw line it is
    };

    /// Applies all pairs from number `first` on to that part of the line, whose text must have been
    /// located. Returns whether the text has changed. `line` and `text` must outlive the result.
    bool Apply(const Pairs& pairs, std::size_t first, LinePart part, const RawLine& line,
               const LineText& text);

    const std::string& Text() const { return text_; }
    const std::vector<Stretch>& Stretches() const { return stretches_; }
    const std::vector<KeptFold>& Folds() const { return folds_; }

    /// The place of the separating colon in the changed text; npos if there is none.
    std::size_t Colon() const { return colon_; }

private:
    class Search;
    struct Occurrence {
        std::size_t begin = 0;
        std::size_t end = 0;
        bool hasColon = false; ///< the separating colon is in it
    };

    void Begin(const RawLine& line, const LineText& text);
    void TakeFolds();
    void Replace(const Pair& pair, LinePart part);
    void Insert(std::string_view newText);
    void KeepUpTo(std::size_t end);
    void KeepFoldsAt(std::size_t place, bool isBlankReplaced);
    void KeepFold(const KeptFold& fold, std::size_t place);
    std::string_view NewText(const Pair& pair, const Occurrence& occurrence);
    void DropFolds();
    std::uint32_t OriginOf(std::size_t place) const;

    const RawLine* line_ = nullptr;
    const LineText* old_ = nullptr;
    std::string text_;
    std::vector<Stretch> stretches_;
    std::vector<KeptFold> folds_;
    std::size_t colon_ = 0;

    // The same after the pair that is being applied, as far as it has been.
    std::string nextText_;
    std::vector<Stretch> nextStretches_;
    std::vector<KeptFold> nextFolds_;
    std::size_t done_ = 0;          // up to this place of text_
    std::size_t stretchesDone_ = 0; // the last one may go on
    std::size_t foldsDone_ = 0;
    std::size_t lastKept_ = 0;    // place in text_ of the fold that was kept last
    std::size_t lastDropped_ = 0; // place in text_ of the fold that was dropped last
    std::string room_;
};

} // namespace vexmarrow::vcard

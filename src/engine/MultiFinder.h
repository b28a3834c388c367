// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/GramScan.h"
#include "engine/SingleFinder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// A part of a text that a step of the cascade has inserted.
struct ChangedPart {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Searches texts for many numbered find texts. A few that are too short for a search together with
/// the others are searched for one by one.
template <typename Unit>
class MultiFinder {
public:
    using View = std::basic_string_view<Unit>;
    using Number = std::uint32_t;

    /// Find text n of `finds` has the number n. The elements must outlive this object and must not
    /// move. `sample` helps to choose rare grams.
    MultiFinder(const std::vector<const SingleFinder<Unit>*>& finds,
                const GramFrequencies<Unit>& sample);

    /// Makes a finder that finds nothing.
    MultiFinder() = default;

    struct Hit {
        std::size_t place = 0;
        Number number = 0;
    };

    /// Sets `hits` to occurrences in the order of their places. If no occurrence crosses either end
    /// of a part, every find text that occurs in the part has at least one hit there. Hits may be
    /// missing if `budget` is spent.
    void Collect(View text, Budget& budget, std::vector<Hit>& hits) const;

    /// Calls `visit(number)` at least once for each find text with an occurrence that touches a
    /// changed part, and maybe for others. The parts must be in order and must not overlap. Calls
    /// may be missing if `budget` is spent.
    template <typename Visit>
    void ForEachAround(View text, std::span<const ChangedPart> changed, Budget& budget,
                       Visit visit) const;

private:
    struct Single {
        const SingleFinder<Unit>* find = nullptr;
        Number number = 0;
    };

    template <typename Look>
    static bool LookAroundEach(View text, std::span<const ChangedPart> changed, std::size_t longest,
                               Look look);

    std::vector<Single> singles_;
    std::vector<GramScan<Unit>> scans_;
};

template <typename Unit>
template <typename Visit>
void MultiFinder<Unit>::ForEachAround(View text, std::span<const ChangedPart> changed,
                                      Budget& budget, Visit visit) const {
    for (const Single& single : singles_) {
        LookAroundEach(text, changed, single.find->Text().size(), [&](View part) {
            if (!single.find->IsIn(part)) {
                return true;
            }
            visit(single.number);
            return false; // once is enough
        });
    }
    for (const GramScan<Unit>& scan : scans_) {
        const bool isDone = LookAroundEach(text, changed, scan.Longest(), [&](View part) {
            return budget.Spend(part.size()) &&
                   scan.ForEach(part, budget, [&](Number number, std::size_t) {
                       visit(number);
                       return true;
                   });
        });
        if (!isDone) {
            return;
        }
    }
}

template <typename Unit>
template <typename Look>
bool MultiFinder<Unit>::LookAroundEach(View text, std::span<const ChangedPart> changed,
                                       std::size_t longest, Look look) {
    const std::size_t margin = longest - 1;
    for (std::size_t i = 0; i < changed.size();) {
        const std::size_t begin = changed[i].begin - std::min(changed[i].begin, margin);
        std::size_t end = 0;
        do { // parts whose surroundings meet are searched together
            end = changed[i].end + std::min(margin, text.size() - changed[i].end);
            ++i;
        } while (i < changed.size() && changed[i].begin <= end + margin);
        if (!look(text.substr(begin, end - begin))) {
            return false;
        }
    }
    return true;
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/FindOne.h"
#include "engine/GramScan.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// Where a step of the cascade has changed a text.
struct ChangedPart {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Tells which of many numbered texts occur in others. A few of them, those too short to be looked
/// for together with the rest, are looked for one by one.
template <typename Unit>
class FindAny {
public:
    using View = std::basic_string_view<Unit>;
    using Number = std::uint32_t;

    /// Find text n of `finds` has the number n. They must outlive this and not move. The sample
    /// helps to look for what is rare.
    FindAny(const std::vector<const FindOne<Unit>*>& finds, const TextSample<Unit>& sample);

    /// Finds nothing.
    FindAny() = default;

    struct Hit {
        std::size_t place = 0;
        Number number = 0;
    };

    /// Puts into `hits`, in the order of their places, enough of the occurrences that each part of
    /// the text across whose ends none lies has a hit for each find text that occurs in it.
    /// False if `effort` was exhausted before the end.
    bool Collect(View text, Effort& effort, std::vector<Hit>& hits) const;

    /// Calls `visit(number)` at least once for each find text of which an occurrence touches a
    /// changed part; others may be visited as well. The parts are in order and do not overlap.
    /// False if `effort` was exhausted before the end.
    template <typename Visit>
    bool ForEachAround(View text, std::span<const ChangedPart> changed, Effort& effort,
                       Visit visit) const;

private:
    struct Single {
        const FindOne<Unit>* find = nullptr;
        Number number = 0;
    };

    template <typename Look>
    static bool LookAround(View text, std::span<const ChangedPart> changed, std::size_t longest,
                           Look look);

    std::vector<Single> singles_;
    std::vector<GramScan<Unit>> scans_;
};

template <typename Unit>
template <typename Visit>
bool FindAny<Unit>::ForEachAround(View text, std::span<const ChangedPart> changed, Effort& effort,
                                  Visit visit) const {
    for (const Single& single : singles_) {
        LookAround(text, changed, single.find->Text().size(), [&](View part) {
            if (single.find->In(part, 0) == View::npos) {
                return true;
            }
            visit(single.number);
            return false; // once is enough
        });
    }
    return std::all_of(scans_.begin(), scans_.end(), [&](const GramScan<Unit>& scan) {
        return LookAround(text, changed, scan.Longest(), [&](View part) {
            return effort.Spend(part.size()) &&
                   scan.ForEach(part, effort, [&](Number number, std::size_t) {
                       visit(number);
                       return true;
                   });
        });
    });
}

template <typename Unit>
template <typename Look>
bool FindAny<Unit>::LookAround(View text, std::span<const ChangedPart> changed, std::size_t longest,
                               Look look) {
    const std::size_t margin = longest - 1;
    for (std::size_t i = 0; i < changed.size();) {
        const std::size_t begin = changed[i].begin - std::min(changed[i].begin, margin);
        std::size_t end = 0;
        do { // parts whose surroundings meet are looked at as one
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

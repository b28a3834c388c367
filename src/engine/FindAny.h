// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/FindOne.h"
#include "engine/GramScan.h"

#include <algorithm>
#include <array>
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

    /// Calls `visit(number)` at least once for each text that occurs in `text`.
    /// False if `effort` was exhausted before the end.
    template <typename Visit>
    bool ForEachIn(View text, Effort& effort, Visit visit) const;

    /// The same for the texts of which an occurrence touches a changed part; others may be visited
    /// as well. The parts are in order and do not overlap.
    template <typename Visit>
    bool ForEachAround(View text, std::span<const ChangedPart> changed, Effort& effort,
                       Visit visit) const;

    /// Goes through a text, from one occurrence to the next.
    class Walk;

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
class FindAny<Unit>::Walk {
public:
    /// `next` is scratch space.
    Walk(const FindAny& any, View text, Effort& effort, std::vector<std::size_t>& next)
        : any_(any), text_(text), effort_(effort), next_(next) {
        next_.assign(any.singles_.size() + any.scans_.size(), kUnknown);
    }

    /// An occurrence's place, at or after `from`. No occurrence lies across `from`, and none lies
    /// wholly before this one with a place between both that no occurrence ever covers; npos if
    /// there is none, or if the effort is exhausted. `from` never falls.
    std::size_t Next(std::size_t from);

private:
    static constexpr std::size_t kUnknown = 0;

    const FindAny& any_;
    View text_;
    Effort& effort_;
    std::vector<std::size_t>& next_; // where each way of looking found something, plus one
};

template <typename Unit>
std::size_t FindAny<Unit>::Walk::Next(std::size_t from) {
    std::size_t nearest = View::npos;
    for (std::size_t way = 0; way < next_.size(); ++way) {
        std::size_t& next = next_[way];
        if (next <= from) {
            std::size_t found = View::npos;
            if (way < any_.singles_.size()) {
                found = any_.singles_[way].find->In(text_, from);
            } else {
                any_.scans_[way - any_.singles_.size()].ForEach(text_.substr(from), effort_,
                                                                [&](Number, std::size_t place) {
                                                                    found = from + place;
                                                                    return false;
                                                                });
                if (effort_.Exhausted()) {
                    return View::npos;
                }
            }
            next = found == View::npos ? View::npos : found + 1;
        }
        nearest = std::min(nearest, next == View::npos ? next : next - 1);
    }
    return nearest;
}

template <typename Unit>
template <typename Visit>
bool FindAny<Unit>::ForEachIn(View text, Effort& effort, Visit visit) const {
    const std::array whole{ChangedPart{0, text.size()}};
    return ForEachAround(text, whole, effort, visit);
}

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

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/LineCascade.h"

#include <algorithm>
#include <functional>

namespace vexmarrow {

template <typename Unit>
void LineCascade<Unit>::MakeDue(std::uint32_t number) {
    if (!isDue_[number]) {
        isDue_[number] = true;
        due_.push_back(number);
        std::push_heap(due_.begin(), due_.end(), std::greater());
    }
}

template <typename Unit>
std::uint32_t LineCascade<Unit>::TakeLowest() {
    std::pop_heap(due_.begin(), due_.end(), std::greater());
    const std::uint32_t lowest = due_.back();
    due_.pop_back();
    isDue_[lowest] = false;
    return lowest;
}

template <typename Unit>
auto LineCascade<Unit>::Run(View line, Hits hits, Budget& budget) -> View {
    std::uint32_t next = 0; // the steps before this one are finished
    for (const auto& hit : hits) {
        MakeDue(hit.number);
    }
    while (!due_.empty() && budget.Spend(kStepCost + line.size() / 16)) {
        const std::uint32_t number = TakeLowest();
        next = number + 1;
        const Step<Unit>& step = steps_[number];
        changed_.clear();
        const auto note = [&](std::size_t place) {
            changed_.push_back({place, place + step.replace.size()});
        };
        if (ReplaceAll(step, line, passes_.room, note)) {
            passes_.text.swap(passes_.room);
            line = passes_.text;
            any_.ForEachAround(line, changed_, budget, [&](std::uint32_t later) {
                if (later >= next) {
                    MakeDue(later);
                }
            });
        }
    }
    if (budget.Exhausted()) {
        while (!due_.empty()) {
            TakeLowest();
        }
        if (passes_.Run(steps_.subspan(next), line)) {
            line = passes_.text;
        }
    }
    return line;
}

template class LineCascade<char>;
template class LineCascade<char16_t>;

} // namespace vexmarrow

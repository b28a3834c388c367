// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/SingleFinder.h"

#include "engine/UnitFrequency.h"

namespace vexmarrow {

template <typename Unit>
SingleFinder<Unit>::SingleFinder(View find) : find_(find), fallback_(find.size() + 1) {
    for (std::size_t place = 1; place < find_.size(); ++place) {
        const double frequency = UnitFrequency(find_[place]);
        if (frequency < UnitFrequency(find_[first_])) {
            second_ = first_;
            first_ = place;
        } else if (second_ == first_ || frequency < UnitFrequency(find_[second_])) {
            second_ = place;
        }
    }
    std::uint32_t matched = 0;
    for (std::size_t place = 1; place < find_.size(); ++place) {
        while (matched != 0 && find_[matched] != find_[place]) {
            matched = fallback_[matched];
        }
        matched += find_[matched] == find_[place] ? 1 : 0;
        fallback_[place + 1] = matched;
    }
}

template class SingleFinder<char>;
template class SingleFinder<char16_t>;

} // namespace vexmarrow

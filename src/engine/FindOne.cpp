// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/FindOne.h"

#include "engine/UnitShare.h"

namespace vexmarrow {

template <typename Unit>
FindOne<Unit>::FindOne(View find) : find_(find), retreat_(find.size() + 1) {
    for (std::size_t place = 1; place < find_.size(); ++place) {
        const double share = UnitShare(find_[place]);
        if (share < UnitShare(find_[first_])) {
            second_ = first_;
            first_ = place;
        } else if (second_ == first_ || share < UnitShare(find_[second_])) {
            second_ = place;
        }
    }
    std::uint32_t matched = 0;
    for (std::size_t place = 1; place < find_.size(); ++place) {
        while (matched != 0 && find_[matched] != find_[place]) {
            matched = retreat_[matched];
        }
        matched += find_[matched] == find_[place] ? 1 : 0;
        retreat_[place + 1] = matched;
    }
}

template class FindOne<char>;
template class FindOne<char16_t>;

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/MultiFinder.h"

#include <iterator>

namespace vexmarrow {
namespace {

// The cost of one more single text, in clock cycles per unit, and of a probe of a scan.
constexpr double kSingleCost = 0.06;
constexpr double kProbeCost = 2;
constexpr std::size_t kHitCost = 40;
constexpr std::size_t kMostHits = 1 << 20; // more would take too much memory
constexpr std::size_t kMostSingles = 3;    // of each group

/// How many of the texts, given by rising lengths, should be searched for one by one. Without the
/// shortest texts, a scan for the others can use a longer stride.
std::size_t SinglesOf(const std::vector<std::size_t>& lengths) {
    if (lengths.size() <= kMostSingles) {
        return lengths.size();
    }
    std::size_t best = 0;
    double least = 0;
    for (std::size_t singles = 0; singles <= kMostSingles; ++singles) {
        const std::size_t stride =
            std::min<std::size_t>(std::max<std::size_t>(lengths[singles], 4) - 3, 8);
        const double cost =
            kSingleCost * static_cast<double>(singles) + kProbeCost / static_cast<double>(stride);
        if (singles == 0 || cost < least) {
            least = cost;
            best = singles;
        }
    }
    return best;
}

} // namespace

template <typename Unit>
MultiFinder<Unit>::MultiFinder(const std::vector<const SingleFinder<Unit>*>& finds,
                               const GramFrequencies<Unit>& sample) {
    std::vector<Single> byLength;
    byLength.reserve(finds.size());
    for (const SingleFinder<Unit>* find : finds) {
        byLength.push_back({find, static_cast<Number>(byLength.size())});
    }
    const auto length = [](const Single& single) { return single.find->Text().size(); };
    std::stable_sort(byLength.begin(), byLength.end(),
                     [&](const Single& a, const Single& b) { return length(a) < length(b); });
    // Grams are at most as long as the shortest text, so very short texts have scans of their own.
    auto group = byLength.cbegin();
    for (const std::size_t limit : {std::size_t{2}, std::size_t{4}, View::npos}) {
        const auto end = std::find_if(
            group, byLength.cend(), [&](const Single& single) { return length(single) >= limit; });
        std::vector<std::size_t> lengths;
        std::transform(group, end, std::back_inserter(lengths), length);
        const auto scanned = group + static_cast<std::ptrdiff_t>(SinglesOf(lengths));
        singles_.insert(singles_.end(), group, scanned);
        std::vector<typename GramScan<Unit>::Find> rest;
        std::transform(scanned, end, std::back_inserter(rest), [](const Single& single) {
            return typename GramScan<Unit>::Find{single.find->Text(), single.number};
        });
        if (!rest.empty()) {
            scans_.emplace_back(std::move(rest), sample);
        }
        group = end;
    }
}

template <typename Unit>
void MultiFinder<Unit>::Collect(View text, Budget& budget, std::vector<Hit>& hits) const {
    hits.clear();
    const auto add = [&](Number number, std::size_t place) {
        hits.push_back({place, number});
        return hits.size() < kMostHits && budget.Spend(kHitCost);
    };
    for (const Single& single : singles_) {
        single.find->ForEach(text, [&](std::size_t place) { return add(single.number, place); });
    }
    for (const GramScan<Unit>& scan : scans_) {
        if (!scan.ForEach(text, budget, add)) {
            break;
        }
    }
    if (hits.size() >= kMostHits) {
        budget.Exhaust();
    }
    std::sort(hits.begin(), hits.end(),
              [](const Hit& a, const Hit& b) { return a.place < b.place; });
}

template class MultiFinder<char>;
template class MultiFinder<char16_t>;

} // namespace vexmarrow

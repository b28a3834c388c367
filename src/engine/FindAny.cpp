// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/FindAny.h"

#include <iterator>

namespace vexmarrow {
namespace {

// What one text more costs by itself, in clock cycles per unit, beside a probe of a scan.
constexpr double kSingleCost = 0.06;
constexpr double kProbeCost = 2;
constexpr std::size_t kHitCost = 40;
constexpr std::size_t kMostHits = 1 << 20; // so many are no longer worth their memory
constexpr std::size_t kMostSingles = 3;    // of each group

/// How many of the texts, whose lengths rise, should be looked for one by one: without the
/// shortest ones, a scan for the others makes longer strides.
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
FindAny<Unit>::FindAny(const std::vector<const FindOne<Unit>*>& finds,
                       const TextSample<Unit>& sample) {
    std::vector<Single> byLength;
    byLength.reserve(finds.size());
    for (const FindOne<Unit>* find : finds) {
        byLength.push_back({find, static_cast<Number>(byLength.size())});
    }
    const auto length = [](const Single& single) { return single.find->Text().size(); };
    std::stable_sort(byLength.begin(), byLength.end(),
                     [&](const Single& a, const Single& b) { return length(a) < length(b); });
    // Grams are as short as the shortest text: so the very short ones are scanned for apart.
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
bool FindAny<Unit>::Collect(View text, Effort& effort, std::vector<Hit>& hits) const {
    hits.clear();
    const auto add = [&](Number number, std::size_t place) {
        hits.push_back({place, number});
        return hits.size() < kMostHits && effort.Spend(kHitCost);
    };
    for (const Single& single : singles_) {
        single.find->ForEach(text, [&](std::size_t place) { return add(single.number, place); });
    }
    for (const GramScan<Unit>& scan : scans_) {
        if (!scan.ForEach(text, effort, add)) {
            break;
        }
    }
    if (hits.size() >= kMostHits) {
        effort.Exhaust();
    }
    std::sort(hits.begin(), hits.end(),
              [](const Hit& a, const Hit& b) { return a.place < b.place; });
    return !effort.Exhausted();
}

template class FindAny<char>;
template class FindAny<char16_t>;

} // namespace vexmarrow

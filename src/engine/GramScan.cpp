// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/GramScan.h"

#include <limits>
#include <utility>

namespace vexmarrow {
namespace {

// The cost of a probe and of a hit in clock cycles.
constexpr double kProbeCost = 3;
constexpr double kHitCost = 100;

} // namespace

template <typename Unit>
GramScan<Unit>::GramScan(std::vector<Find> finds, const GramFrequencies<Unit>& sample)
    : finds_(std::move(finds)) {
    std::size_t shortest = finds_.front().text.size();
    for (const Find& find : finds_) {
        shortest = std::min(shortest, find.text.size());
        longest_ = std::max(longest_, find.text.size());
    }
    // Wide grams are rare. Narrow grams permit a long stride with fewer probes. A shorter stride
    // offers a choice of rare grams.
    const std::size_t widest = std::min(kWidestGram<Unit>, shortest);
    Plan best;
    for (std::size_t width = (widest + 1) / 2; width <= widest; ++width) {
        const std::size_t longest = std::min(kLongestStride, shortest - width + 1);
        for (std::size_t stride = longest; stride * 2 >= longest; stride -= (stride + 2) / 3) {
            Plan plan = MakePlan(width, stride, sample);
            if (best.entries.empty() || plan.cost < best.cost) {
                best = std::move(plan);
            }
        }
    }
    Prepare(std::move(best));
}

template <typename Unit>
auto GramScan<Unit>::MakePlan(std::size_t width, std::size_t stride,
                              const GramFrequencies<Unit>& sample) const -> Plan {
    Plan plan{.width = width, .stride = stride, .entries = {}, .cost = kProbeCost};
    plan.entries.reserve(finds_.size() * stride);
    // The number of entries for each hash of a gram.
    std::vector<std::uint32_t> load(std::bit_ceil(4 * finds_.size() * stride));
    const int shift = 64 - std::countr_zero(load.size());
    for (std::uint32_t find = 0; find < finds_.size(); ++find) {
        const View text = finds_[find].text;
        for (std::size_t residue = 0; residue < stride; ++residue) {
            Entry entry;
            double least = std::numeric_limits<double>::infinity();
            double chosen = 0;
            for (std::size_t offset = residue; offset + width <= text.size(); offset += stride) {
                const View units = text.substr(offset, width);
                const Gram gram = GramOf(units);
                const double chance = sample.Chance(units);
                const double weight = chance * (4 + load[MixedGram(gram) >> shift]);
                if (weight < least) {
                    least = weight;
                    chosen = chance;
                    entry = {gram, find, static_cast<std::uint32_t>(offset)};
                }
            }
            if (load[MixedGram(entry.gram) >> shift]++ == 0) {
                plan.cost += kHitCost * chosen;
            }
            plan.entries.push_back(entry);
        }
    }
    plan.cost /= static_cast<double>(stride);
    return plan;
}

template <typename Unit>
void GramScan<Unit>::Prepare(Plan plan) {
    width_ = plan.width;
    stride_ = plan.stride;
    entries_ = std::move(plan.entries);
    std::stable_sort(entries_.begin(), entries_.end(),
                     [](const Entry& a, const Entry& b) { return a.gram < b.gram; });
    const std::size_t slots = std::bit_ceil(entries_.size() * 2);
    // Few bits save space in the cache. The hash of a gram of one or two bytes has only upper bits.
    constexpr std::size_t kMost = std::size_t{1} << kMostBits;
    const bool narrow = width_ * sizeof(Unit) <= 2;
    const std::size_t bits =
        narrow ? kMost : std::clamp<std::size_t>(std::bit_ceil(entries_.size() * 64), 1024, kMost);
    bitMask_ = bits - 1;
    bits_.resize(bits / 64);
    slots_.resize(std::max<std::size_t>(slots, 2));
    slotShift_ = 64 - std::countr_zero(slots_.size());
    for (std::uint32_t begin = 0; begin < entries_.size();) {
        const Gram gram = entries_[begin].gram;
        std::uint32_t end = begin;
        while (end < entries_.size() && entries_[end].gram == gram) {
            ++end;
        }
        const Gram bit = MixedGram(gram) >> (64 - kMostBits) & bitMask_;
        bits_[bit / 64] |= std::uint64_t{1} << (bit % 64);
        std::size_t at = MixedGram(gram) >> slotShift_;
        while (slots_[at].begin != slots_[at].end) {
            at = (at + 1) & (slots_.size() - 1);
        }
        slots_[at] = {gram, begin, end};
        begin = end;
    }
}

template class GramScan<char>;
template class GramScan<char16_t>;

} // namespace vexmarrow

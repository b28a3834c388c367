// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/GramScan.h"

#include "engine/UnitShare.h"

#include <unordered_map>
#include <utility>

namespace vexmarrow {
namespace {

// What a probe and a hit cost, in clock cycles.
constexpr double kProbeCost = 1.5;
constexpr double kHitCost = 30;

} // namespace

template <typename Unit>
GramScan<Unit>::GramScan(std::vector<Find> finds) : finds_(std::move(finds)) {
    std::size_t shortest = finds_.front().text.size();
    for (const Find& find : finds_) {
        shortest = std::min(shortest, find.text.size());
        longest_ = std::max(longest_, find.text.size());
    }
    // Longer grams are rarer; shorter ones leave room for a longer stride.
    const std::size_t widest = std::min(kWidest, shortest);
    Plan best;
    for (std::size_t width = widest - widest / 3; width <= widest; ++width) {
        Plan plan = MakePlan(width, std::min(kLongestStride, shortest - width + 1));
        if (best.entries.empty() || plan.cost < best.cost) {
            best = std::move(plan);
        }
    }
    Prepare(std::move(best));
}

template <typename Unit>
auto GramScan<Unit>::MakePlan(std::size_t width, std::size_t stride) const -> Plan {
    Plan plan{.width = width, .stride = stride, .entries = {}, .cost = kProbeCost};
    plan.entries.reserve(finds_.size() * stride);
    std::unordered_map<Gram, std::uint32_t> load; // how many entries a gram has
    for (std::uint32_t number = 0; number < finds_.size(); ++number) {
        const View text = finds_[number].text;
        for (std::size_t residue = 0; residue < stride; ++residue) {
            Entry entry;
            double share = 0;
            double least = 0;
            for (std::size_t offset = residue; offset + width <= text.size(); offset += stride) {
                const Gram gram = Load(text.data() + offset, width);
                double chance = 1;
                for (const Unit unit : text.substr(offset, width)) {
                    chance *= UnitShare(unit);
                }
                const auto found = load.find(gram);
                const double weight = chance * (4 + (found == load.end() ? 0 : found->second));
                if (offset == residue || weight < least) {
                    least = weight;
                    share = chance;
                    entry = {gram, number, static_cast<std::uint32_t>(offset)};
                }
            }
            if (++load[entry.gram] == 1) {
                plan.cost += kHitCost * share;
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
    // 2^18 bits fill the innermost cache of most processors; more than that would not be faster.
    const std::size_t bits =
        std::clamp<std::size_t>(std::bit_ceil(entries_.size() * 64), 1U << 10, 1U << 18);
    const std::size_t slots = std::bit_ceil(entries_.size() * 2);
    bits_.resize(bits / 8);
    slots_.resize(std::max<std::size_t>(slots, 2));
    bitShift_ = 64 - std::countr_zero(bits);
    slotShift_ = 64 - std::countr_zero(slots_.size());
    for (std::uint32_t begin = 0; begin < entries_.size();) {
        const Gram gram = entries_[begin].gram;
        std::uint32_t end = begin;
        while (end < entries_.size() && entries_[end].gram == gram) {
            ++end;
        }
        const Gram bit = Hash(gram) >> bitShift_;
        bits_[bit >> 3] = static_cast<std::uint8_t>(bits_[bit >> 3] | 1U << (bit & 7));
        std::size_t at = Hash(gram) >> slotShift_;
        while (slots_[at].begin != slots_[at].end) {
            at = (at + 1) & (slots_.size() - 1);
        }
        slots_[at] = {gram, begin, end};
        begin = end;
    }
}

template <typename Unit>
auto GramScan<Unit>::Load(const Unit* place, std::size_t width) -> Gram {
    switch (width) {
    case 1:
        return Load<1>(place);
    case 2:
        return Load<2>(place);
    case 3:
        return Load<3>(place);
    default:
        return Load<4>(place);
    }
}

template class GramScan<char>;
template class GramScan<char16_t>;

} // namespace vexmarrow

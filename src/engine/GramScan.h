// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/Effort.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// Looks for many texts at once.
///
/// A gram is a few units in a row. Only every stride-th place of a text is probed: each find text
/// gives one gram for every way in which it can lie across the probed places, so each occurrence
/// has exactly one probe that announces it. docs/CASCADE.md tells more.
template <typename Unit>
class GramScan {
public:
    using View = std::basic_string_view<Unit>;

    /// A find text, which must not be empty and must outlive the scan, and its number.
    struct Find {
        View text;
        std::uint32_t number = 0;
    };

    explicit GramScan(std::vector<Find> finds);

    std::size_t Longest() const { return longest_; }

    /// Calls `visit(number, place)` for each occurrence of each find text, overlapping ones too,
    /// until it returns false. Of the occurrences in two parts of the text between which none
    /// lies across, those in the first part come first; within a part they come in any order.
    /// False if it was stopped or `effort` is exhausted.
    template <typename Visit>
    bool ForEach(View text, Effort& effort, Visit visit) const {
        switch (width_) {
        case 1:
            return Probe<1>(text, effort, visit);
        case 2:
            return Probe<2>(text, effort, visit);
        case 3:
            return Probe<3>(text, effort, visit);
        default:
            return Probe<4>(text, effort, visit);
        }
    }

    static constexpr std::size_t kWidest = 4;
    static constexpr std::size_t kLongestStride = 8;

private:
    using Gram = std::uint64_t;

    /// That a find text stands around a probed place when this gram stands there.
    struct Entry {
        Gram gram = 0;
        std::uint32_t find = 0; // index into finds_
        std::uint32_t offset = 0;
    };
    /// The entries of one gram; none in an empty slot.
    struct Slot {
        Gram gram = 0;
        std::uint32_t begin = 0;
        std::uint32_t end = 0;
    };
    struct Plan {
        std::size_t width = 1;
        std::size_t stride = 1;
        std::vector<Entry> entries;
        double cost = 0; // per unit of text
    };

    Plan MakePlan(std::size_t width, std::size_t stride) const;
    void Prepare(Plan plan);

    template <std::size_t Width>
    static Gram Load(const Unit* place);
    static Gram Load(const Unit* place, std::size_t width);
    static Gram Hash(Gram gram) { return gram * 0x9E3779B97F4A7C15U; }
    const Slot* SlotOf(Gram gram) const;

    template <std::size_t Width, typename Visit>
    bool Probe(View text, Effort& effort, Visit& visit) const;
    template <typename Visit>
    bool Verify(View text, std::size_t probed, Gram gram, Effort& effort, Visit& visit) const;

    std::vector<Find> finds_;
    std::size_t longest_ = 0;
    std::size_t width_ = 1;
    std::size_t stride_ = 1;
    int bitShift_ = 0;
    int slotShift_ = 0;
    std::vector<std::uint8_t> bits_; // which grams may be there, by hash
    std::vector<Slot> slots_;        // which grams are there, by hash; at least half are empty
    std::vector<Entry> entries_;
};

template <typename Unit>
template <std::size_t Width>
auto GramScan<Unit>::Load(const Unit* place) -> Gram {
    constexpr std::size_t kWhole = std::bit_floor(Width); // read in two parts if need be
    Gram low = 0;
    std::memcpy(&low, place, kWhole * sizeof(Unit));
    if constexpr (kWhole != Width) {
        Gram high = 0;
        std::memcpy(&high, place + kWhole, sizeof(Unit));
        low |= high << (8 * kWhole * sizeof(Unit));
    }
    return low;
}

template <typename Unit>
template <std::size_t Width, typename Visit>
bool GramScan<Unit>::Probe(View text, Effort& effort, Visit& visit) const {
    if (text.size() < Width) {
        return true;
    }
    const std::size_t probes = (text.size() - Width) / stride_ + 1;
    const std::size_t stride = stride_;
    const std::uint8_t* const bits = bits_.data();
    const auto mayBe = [&](std::size_t probed) {
        const Gram bit = Hash(Load<Width>(text.data() + probed)) >> bitShift_;
        return static_cast<unsigned>(bits[bit >> 3]) >> (bit & 7) & 1U;
    };
    const auto verify = [&](std::size_t probed) {
        return Verify(text, probed, Load<Width>(text.data() + probed), effort, visit);
    };
    std::size_t at = 0;
    std::size_t probe = 0;
    for (; probe + 4 <= probes; probe += 4, at += 4 * stride) {
        unsigned hits = mayBe(at) | mayBe(at + stride) << 1 | mayBe(at + 2 * stride) << 2 |
                        mayBe(at + 3 * stride) << 3;
        for (; hits != 0; hits &= hits - 1) {
            if (!verify(at + static_cast<std::size_t>(std::countr_zero(hits)) * stride)) {
                return false;
            }
        }
    }
    for (; probe < probes; ++probe, at += stride) {
        if (mayBe(at) != 0 && !verify(at)) {
            return false;
        }
    }
    return true;
}

template <typename Unit>
auto GramScan<Unit>::SlotOf(Gram gram) const -> const Slot* {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t at = Hash(gram) >> slotShift_;; at = (at + 1) & mask) {
        const Slot& slot = slots_[at];
        if (slot.begin == slot.end) {
            return nullptr;
        }
        if (slot.gram == gram) {
            return &slot;
        }
    }
}

template <typename Unit>
template <typename Visit>
bool GramScan<Unit>::Verify(View text, std::size_t probed, Gram gram, Effort& effort,
                            Visit& visit) const {
    const Slot* slot = SlotOf(gram);
    if (slot == nullptr) {
        return true;
    }
    for (std::uint32_t at = slot->begin; at < slot->end; ++at) {
        const Entry& entry = entries_[at];
        const View find = finds_[entry.find].text;
        if (!effort.Spend(8 + find.size() / 16)) {
            return false;
        }
        if (entry.offset > probed || text.size() - (probed - entry.offset) < find.size()) {
            continue;
        }
        const std::size_t place = probed - entry.offset;
        if (View(text.data() + place, find.size()) == find &&
            !visit(finds_[entry.find].number, place)) {
            return false;
        }
    }
    return true;
}

} // namespace vexmarrow

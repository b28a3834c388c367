// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/Budget.h"
#include "engine/GramFrequencies.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// Searches for many texts at once, by probing only every stride-th place of a text. Each find text
/// has one gram for each of its possible positions relative to the probed places, so exactly one
/// probe detects each occurrence. docs/CASCADE.md explains more.
template <typename Unit>
class GramScan {
public:
    using View = std::basic_string_view<Unit>;

    /// A find text and its number. The text must not be empty and must outlive the scan.
    struct Find {
        View text;
        std::uint32_t number = 0;
    };

    /// `sample` helps to choose rare grams.
    GramScan(std::vector<Find> finds, const GramFrequencies<Unit>& sample);

    std::size_t Longest() const { return longest_; }

    /// Calls `visit(number, place)` for each occurrence of each find text, even where they overlap,
    /// until it returns false. If no occurrence spans a place, all occurrences before it are
    /// reported before those after it. No other order is guaranteed. Returns false if `visit` or
    /// the budget ended the search.
    template <typename Visit>
    bool ForEach(View text, Budget& budget, Visit visit) const;

private:
    static constexpr std::size_t kLongestStride = 8;
    static constexpr int kMostBits = 18; // 2^18 bits fill the first cache of most processors
    static constexpr std::size_t kRead = sizeof(Gram) / sizeof(Unit);

    /// A gram of a find text, and its offset in that text.
    struct Entry {
        Gram gram = 0;
        std::uint32_t find = 0; // index into finds_
        std::uint32_t offset = 0;
    };
    /// The range of entries with one gram; an empty slot has an empty range.
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

    Plan MakePlan(std::size_t width, std::size_t stride, const GramFrequencies<Unit>& sample) const;
    void Prepare(Plan plan);

    const Slot* SlotOf(Gram gram) const;
    static Gram Read(View text, std::size_t at);
    /// Whether a find text may have a gram with this hash.
    bool MayBe(Gram hash) const {
        const Gram bit = hash >> (64 - kMostBits) & bitMask_;
        return (bits_[bit / 64] >> (bit % 64) & 1U) != 0;
    }
    template <typename Visit>
    bool Verify(View text, std::size_t probed, Budget& budget, Visit& visit) const;

    std::vector<Find> finds_;
    std::size_t longest_ = 0;
    std::size_t width_ = 1;
    std::size_t stride_ = 1;
    Gram bitMask_ = 0;
    int slotShift_ = 0;
    std::vector<std::uint64_t> bits_; // a set bit for the hash of each gram
    std::vector<Slot> slots_;         // a hash table of the grams, at least half empty
    std::vector<Entry> entries_;
};

/// The eight bytes at a place. Bytes beyond the end of the text are undefined.
template <typename Unit>
Gram GramScan<Unit>::Read(View text, std::size_t at) {
    Gram bytes = 0;
    if (at + kRead <= text.size()) {
        std::memcpy(&bytes, text.data() + at, sizeof bytes);
    } else if (kLowByteFirst && text.size() >= kRead) {
        std::memcpy(&bytes, text.data() + text.size() - kRead, sizeof bytes);
        bytes >>= 8 * sizeof(Unit) * (at + kRead - text.size());
    } else {
        std::memcpy(&bytes, text.data() + at, (text.size() - at) * sizeof(Unit));
    }
    return bytes;
}

template <typename Unit>
template <typename Visit>
bool GramScan<Unit>::ForEach(View text, Budget& budget, Visit visit) const {
    constexpr std::size_t kProbes = 4;
    const std::size_t stride = stride_;
    const int bitsBeside = BitsBeside<Unit>(width_);
    const std::uint64_t* const bits = bits_.data();
    const Gram bitMask = bitMask_;
    const Unit* const units = text.data();
    const auto mayBe = [=](std::size_t probed) {
        Gram bytes = 0;
        std::memcpy(&bytes, units + probed, sizeof bytes);
        const Gram bit = MixedGram(bytes, bitsBeside) >> (64 - kMostBits) & bitMask;
        return bits[bit / 64] >> (bit % 64) & 1U;
    };
    std::size_t at = 0;
    const std::size_t reach = (kProbes - 1) * stride + kRead;
    for (; at + reach <= text.size(); at += kProbes * stride) {
        if ((mayBe(at) | mayBe(at + stride) | mayBe(at + 2 * stride) | mayBe(at + 3 * stride)) != 0)
            [[unlikely]] {
            for (std::size_t probe = 0; probe < kProbes; ++probe) {
                const std::size_t probed = at + probe * stride;
                if (mayBe(probed) != 0 && !Verify(text, probed, budget, visit)) {
                    return false;
                }
            }
        }
    }
    for (; at + width_ <= text.size(); at += stride) {
        if (MayBe(MixedGram(Read(text, at), bitsBeside)) && !Verify(text, at, budget, visit)) {
            return false;
        }
    }
    return true;
}

template <typename Unit>
auto GramScan<Unit>::SlotOf(Gram gram) const -> const Slot* {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t at = MixedGram(gram) >> slotShift_;; at = (at + 1) & mask) {
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
bool GramScan<Unit>::Verify(View text, std::size_t probed, Budget& budget, Visit& visit) const {
    const Slot* slot = SlotOf(TrimmedGram(Read(text, probed), BitsBeside<Unit>(width_)));
    if (slot == nullptr) {
        return true;
    }
    for (std::uint32_t at = slot->begin; at < slot->end; ++at) {
        const Entry& entry = entries_[at];
        const View find = finds_[entry.find].text;
        if (!budget.Spend(8 + find.size() / 16)) {
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

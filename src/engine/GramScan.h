// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/Effort.h"
#include "engine/TextSample.h"

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

    /// The sample helps to look for what is rare.
    GramScan(std::vector<Find> finds, const TextSample<Unit>& sample);

    std::size_t Longest() const { return longest_; }

    /// Calls `visit(number, place)` for each occurrence of each find text, overlapping ones too,
    /// until it returns false. Of the occurrences in two parts of the text between which none
    /// lies across, those in the first part come first; within a part they come in any order.
    /// False if it was stopped or `effort` is exhausted.
    template <typename Visit>
    bool ForEach(View text, Effort& effort, Visit visit) const;

private:
    static constexpr std::size_t kLongestStride = 8;
    static constexpr int kMostBits = 18; // fill the innermost cache of most processors
    static constexpr std::size_t kRead = sizeof(Gram) / sizeof(Unit);

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

    Plan MakePlan(std::size_t width, std::size_t stride, const TextSample<Unit>& sample) const;
    void Prepare(Plan plan);

    const Slot* SlotOf(Gram gram) const;
    static Gram Read(View text, std::size_t at);
    /// Whether a gram with this hash may be among those of the find texts.
    bool MayBe(Gram hash) const {
        const Gram bit = hash >> (64 - kMostBits) & bitMask_;
        return (bits_[bit / 64] >> (bit % 64) & 1U) != 0;
    }
    template <typename Visit>
    bool Verify(View text, std::size_t probed, Effort& effort, Visit& visit) const;

    std::vector<Find> finds_;
    std::size_t longest_ = 0;
    std::size_t width_ = 1;
    std::size_t stride_ = 1;
    Gram bitMask_ = 0;
    int slotShift_ = 0;
    std::vector<std::uint64_t> bits_; // which grams may be there, by hash
    std::vector<Slot> slots_;         // which grams are there, by hash; at least half are empty
    std::vector<Entry> entries_;
};

/// The eight bytes at a place; those beyond the end of the text are anything.
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
bool GramScan<Unit>::ForEach(View text, Effort& effort, Visit visit) const {
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
                if (mayBe(probed) != 0 && !Verify(text, probed, effort, visit)) {
                    return false;
                }
            }
        }
    }
    for (; at + width_ <= text.size(); at += stride) {
        if (MayBe(MixedGram(Read(text, at), bitsBeside)) && !Verify(text, at, effort, visit)) {
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
bool GramScan<Unit>::Verify(View text, std::size_t probed, Effort& effort, Visit& visit) const {
    const Slot* slot = SlotOf(TrimmedGram(Read(text, probed), BitsBeside<Unit>(width_)));
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

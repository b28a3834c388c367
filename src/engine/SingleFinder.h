// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vexmarrow {

/// Searches texts for one find text.
///
/// It looks for two rare units of the find text at many places at once, and compares the rest where
/// both match. When too many of these places are no occurrences, it changes to a search that always
/// takes linear time.
template <typename Unit>
class SingleFinder {
public:
    using View = std::basic_string_view<Unit>;

    explicit SingleFinder(View find);

    const std::basic_string<Unit>& Text() const { return find_; }

    /// Calls `visit(place)` for each occurrence, from left to right and without overlap, until it
    /// returns false. The empty text occurs nowhere.
    template <typename Visit>
    void ForEach(View text, Visit visit) const;

    bool IsIn(View text) const {
        bool isIn = false;
        ForEach(text, [&](std::size_t) {
            isIn = true;
            return false;
        });
        return isIn;
    }

private:
    struct Progress {
        std::size_t clear = 0;  // where the last occurrence ends
        std::size_t wasted = 0; // clock cycles spent on places without an occurrence
        bool IsPoor(std::size_t at) const { return wasted > 4096 + 4 * at; }
    };

    /// Places of a block that may have an occurrence: bit n is its n-th place.
    using Candidates = std::uint64_t;
    template <typename Visit>
    bool Confirm(View text, std::size_t block, Candidates candidates, Progress& progress,
                 Visit& visit) const;
    template <typename Visit>
    void ForEachInLinearTime(View text, std::size_t from, Visit& visit) const;
    Candidates OneByOne(const Unit* block, std::size_t places) const;
#if defined(__SSE2__)
    static constexpr std::size_t kVector = sizeof(__m128i) / sizeof(Unit);
    static constexpr std::size_t kBlock = 4 * kVector;
    static constexpr std::size_t kPrefetch = 4096 / sizeof(Unit);
    __m128i Compare(const Unit* block) const;
    Candidates InVector(const Unit* block) const;
    Candidates InBlock(const Unit* block) const;
#endif

    std::basic_string<Unit> find_;
    std::size_t first_ = 0; // the offsets of the two rare units; equal in a text of one unit
    std::size_t second_ = 0;
    /// For each length n: the length of the longest proper prefix of the find text that the first n
    /// units end with.
    std::vector<std::uint32_t> fallback_;
};

template <typename Unit>
auto SingleFinder<Unit>::OneByOne(const Unit* block, std::size_t places) const -> Candidates {
    Candidates candidates = 0;
    for (std::size_t place = 0; place < places; ++place) {
        const bool both =
            block[place + first_] == find_[first_] && block[place + second_] == find_[second_];
        candidates |= Candidates{both} << place;
    }
    return candidates;
}

#if defined(__SSE2__)
template <typename Unit>
__m128i SingleFinder<Unit>::Compare(const Unit* block) const {
    const auto load = [block](std::size_t offset) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + offset));
    };
    if constexpr (sizeof(Unit) == 1) {
        return _mm_and_si128(_mm_cmpeq_epi8(load(first_), _mm_set1_epi8(find_[first_])),
                             _mm_cmpeq_epi8(load(second_), _mm_set1_epi8(find_[second_])));
    } else {
        const auto all = [](Unit unit) { return _mm_set1_epi16(static_cast<short>(unit)); };
        return _mm_and_si128(_mm_cmpeq_epi16(load(first_), all(find_[first_])),
                             _mm_cmpeq_epi16(load(second_), all(find_[second_])));
    }
}

template <typename Unit>
auto SingleFinder<Unit>::InVector(const Unit* block) const -> Candidates {
    __m128i equal = Compare(block);
    if constexpr (sizeof(Unit) == 2) {
        equal = _mm_packs_epi16(equal, _mm_setzero_si128());
    }
    return static_cast<unsigned>(_mm_movemask_epi8(equal));
}

template <typename Unit>
auto SingleFinder<Unit>::InBlock(const Unit* block) const -> Candidates {
    const __m128i a = Compare(block);
    const __m128i b = Compare(block + kVector);
    const __m128i c = Compare(block + 2 * kVector);
    const __m128i d = Compare(block + 3 * kVector);
    const __m128i any = _mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d));
    if (_mm_movemask_epi8(any) == 0) {
        return 0;
    }
    const auto bits = [](__m128i equal) {
        return Candidates{static_cast<unsigned>(_mm_movemask_epi8(equal))};
    };
    if constexpr (sizeof(Unit) == 1) {
        return bits(a) | bits(b) << 16 | bits(c) << 32 | bits(d) << 48;
    } else {
        return bits(_mm_packs_epi16(a, b)) | bits(_mm_packs_epi16(c, d)) << 16;
    }
}
#endif

template <typename Unit>
template <typename Visit>
bool SingleFinder<Unit>::Confirm(View text, std::size_t block, Candidates candidates,
                                 Progress& progress, Visit& visit) const {
    const std::size_t length = find_.size();
    for (; candidates != 0; candidates &= candidates - 1) {
        const std::size_t place = block + static_cast<std::size_t>(std::countr_zero(candidates));
        if (place < progress.clear) {
            continue;
        }
        if (View(text.data() + place, length) != find_) {
            progress.wasted += 24 + length / 16; // an estimate
            continue;
        }
        progress.clear = place + length;
        if (!visit(place)) {
            return false;
        }
    }
    return true;
}

template <typename Unit>
template <typename Visit>
void SingleFinder<Unit>::ForEach(View text, Visit visit) const {
    if (find_.empty() || text.size() < find_.size()) {
        return;
    }
    const std::size_t places = text.size() - find_.size() + 1;
    std::size_t at = 0; // all places before this one are finished
    Progress progress;
#if defined(__SSE2__)
    while (at + kBlock <= places && !progress.IsPoor(at)) {
        // The processor's own prefetching stops at page ends and while a match is copied.
        __builtin_prefetch(text.data() + std::min(at + kPrefetch, text.size()));
        const Candidates candidates = InBlock(text.data() + at);
        if (candidates != 0 && !Confirm(text, at, candidates, progress, visit)) [[unlikely]] {
            return;
        }
        at = std::max(at + kBlock, progress.clear);
    }
    while (at < places && places >= kVector && !progress.IsPoor(at)) {
        // The last vector may begin at finished places, but never reaches beyond the text.
        const std::size_t block = std::min(at, places - kVector);
        const Candidates candidates = InVector(text.data() + block) >> (at - block) << (at - block);
        if (!Confirm(text, block, candidates, progress, visit)) {
            return;
        }
        at = std::max(at + kVector, progress.clear);
    }
#endif
    while (at < places && !progress.IsPoor(at)) {
        const std::size_t count = std::min<std::size_t>(64, places - at);
        if (!Confirm(text, at, OneByOne(text.data() + at, count), progress, visit)) {
            return;
        }
        at = std::max(at + count, progress.clear);
    }
    if (at < places) {
        ForEachInLinearTime(text, at, visit);
    }
}

template <typename Unit>
template <typename Visit>
void SingleFinder<Unit>::ForEachInLinearTime(View text, std::size_t from, Visit& visit) const {
    std::size_t matched = 0;
    for (std::size_t at = from; at < text.size(); ++at) {
        while (matched != 0 && find_[matched] != text[at]) {
            matched = fallback_[matched];
        }
        matched += find_[matched] == text[at] ? 1 : 0;
        if (matched == find_.size()) {
            matched = 0;
            if (!visit(at + 1 - find_.size())) {
                return;
            }
        }
    }
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/Effort.h"
#include "engine/FindAny.h"
#include "engine/ReplaceAll.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// Runs a cascade over one line, in which few of the pairs have anything to do: only those are
/// run, lowest first, and around what they insert it is looked for more of the later ones.
template <typename Unit>
class LineCascade {
public:
    using View = std::basic_string_view<Unit>;

    /// `any` numbers the find texts as `steps` does. Both must outlive this.
    LineCascade(std::span<const Step<Unit>> steps, const FindAny<Unit>& any)
        : steps_(steps), any_(any), isDue_(steps.size()) {}

    using Hits = std::span<const typename FindAny<Unit>::Hit>;

    /// What the cascade makes of a line in which these find texts occur and no others; valid until
    /// the next call. It is right even if `effort` is exhausted on the way.
    View Run(View line, Hits hits, Effort& effort);

private:
    static constexpr std::size_t kStepCost = 40;

    void MakeDue(std::uint32_t number);
    std::uint32_t TakeLowest();

    std::span<const Step<Unit>> steps_;
    const FindAny<Unit>& any_;
    std::vector<std::uint32_t> due_; // a heap, lowest number first, of the steps to be run
    std::vector<bool> isDue_;
    std::vector<ChangedPart> changed_;
    Passes<Unit> passes_;
};

} // namespace vexmarrow

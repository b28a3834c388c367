// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/Budget.h"
#include "engine/CascadeSteps.h"
#include "engine/MultiFinder.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// Runs a cascade over one line in which few pairs match. Only these are run, lowest first. After
/// each of them, the surroundings of what it inserted are searched for later pairs.
template <typename Unit>
class LineCascade {
public:
    using View = std::basic_string_view<Unit>;

    /// `any` finds the text of step n with the number n. Both must outlive this object.
    LineCascade(std::span<const Step<Unit>> steps, const MultiFinder<Unit>& any)
        : steps_(steps), any_(any), isDue_(steps.size()) {}

    using Hits = std::span<const typename MultiFinder<Unit>::Hit>;

    /// The result for a line in which exactly these find texts occur; valid until the next call. It
    /// is correct even if `budget` is spent before the end.
    View Run(View line, Hits hits, Budget& budget);

private:
    static constexpr std::size_t kStepCost = 40;

    void MakeDue(std::uint32_t number);
    std::uint32_t TakeLowest();

    std::span<const Step<Unit>> steps_;
    const MultiFinder<Unit>& any_;
    std::vector<std::uint32_t> due_; // a heap of the steps to run, lowest number first
    std::vector<bool> isDue_;
    std::vector<ChangedPart> changed_;
    Passes<Unit> passes_;
};

} // namespace vexmarrow

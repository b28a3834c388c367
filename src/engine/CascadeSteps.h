// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/SingleFinder.h"

#include <span>
#include <string>
#include <string_view>

namespace vexmarrow {

/// A prepared pair of a cascade.
template <typename Unit>
struct Step {
    SingleFinder<Unit> find;
    std::basic_string<Unit> replace;
};

/// Sets `result` to `text` with every occurrence replaced, and calls `replaced(place)` with the
/// place in `result` of each replacement. Returns false, and leaves `result` unchanged, if there
/// was none. `text` must not lie in `result`.
template <typename Unit, typename Replaced>
bool ReplaceAll(const Step<Unit>& step, std::basic_string_view<Unit> text,
                std::basic_string<Unit>& result, Replaced replaced) {
    std::size_t copied = 0;
    bool any = false;
    step.find.ForEach(text, [&](std::size_t place) {
        if (!any) {
            any = true;
            result.clear();
            result.reserve(text.size() + step.replace.size());
        }
        result.append(text, copied, place - copied);
        replaced(result.size());
        result.append(step.replace);
        copied = place + step.find.Text().size();
        return true;
    });
    if (any) {
        result.append(text, copied);
    }
    return any;
}

/// Runs steps one after another, with two buffers that are reused.
template <typename Unit>
struct Passes {
    std::basic_string<Unit> text;
    std::basic_string<Unit> room;

    /// Sets `text` to the result of all steps for the whole `source`, which may be `text` itself.
    /// Returns false if nothing was replaced.
    bool Run(std::span<const Step<Unit>> steps, std::basic_string_view<Unit> source) {
        bool any = false;
        for (const Step<Unit>& step : steps) {
            if (ReplaceAll(step, any ? text : source, room, [](std::size_t) {})) {
                text.swap(room);
                any = true;
            }
        }
        return any;
    }
};

} // namespace vexmarrow

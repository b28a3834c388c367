// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/FindOne.h"

#include <span>
#include <string>
#include <string_view>

namespace vexmarrow {

/// One pair of a cascade, prepared.
template <typename Unit>
struct Step {
    FindOne<Unit> find;
    std::basic_string<Unit> replace;
};

/// Replaces every occurrence and calls `replaced(place)` with the place in `result` of each
/// replacement. False if there was none; then `result` is left alone. `text` must not lie in it.
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

/// A text on its way through a cascade, and room for what the next step makes of it.
template <typename Unit>
struct Passes {
    std::basic_string<Unit> text;
    std::basic_string<Unit> room;

    /// Runs one step after the other over the whole of a text, which may be `text` itself. False
    /// if nothing was replaced; else the result is `text`.
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

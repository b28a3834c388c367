// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// What to find, character by character with exact case, and what to put in its place. An empty
/// find text is found nowhere.
struct ReplacementPair {
    std::u16string find;
    std::u16string replace;
};

/// Replaces with an ordered list of pairs. Each pair changes every occurrence of its find text,
/// from left to right and without overlap, in what the pairs before it have made of the text; what
/// a pair inserts is not searched again by that pair.
class Cascade {
public:
    explicit Cascade(std::vector<ReplacementPair> pairs);

    void Apply(std::u16string& text) const;

private:
    std::vector<ReplacementPair> pairs_;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// What to find, unit by unit with exact case, and what to put in its place. An empty find text is
/// found nowhere.
template <typename Unit>
struct BasicReplacementPair {
    std::basic_string<Unit> find;
    std::basic_string<Unit> replace;
};

/// Replaces with an ordered list of pairs. Each pair changes every occurrence of its find text,
/// from left to right and without overlap, in what the pairs before it have made of the text; what
/// a pair inserts is not searched again by that pair. docs/CASCADE.md tells how.
///
/// It is made for bytes and for 16-bit units. Making one takes time for each pair; applying it to
/// many texts takes memory only while they grow. Not for several threads at once.
template <typename Unit>
class BasicCascade {
public:
    using View = std::basic_string_view<Unit>;

    explicit BasicCascade(std::vector<BasicReplacementPair<Unit>> pairs);

    /// Puts the replaced text into `result`, in which `text` must not lie. Returns false if nothing
    /// was found: then `result` means nothing, and the text stays as it is.
    bool Apply(View text, std::basic_string<Unit>& result) const {
        return way_->Apply(text, result);
    }

    /// One of the ways to do it.
    class Way {
    public:
        Way() = default;
        Way(const Way&) = delete;
        Way& operator=(const Way&) = delete;
        virtual ~Way() = default;
        virtual bool Apply(std::basic_string_view<Unit> text, std::basic_string<Unit>& result) = 0;
    };

private:
    std::unique_ptr<Way> way_;
};

extern template class BasicCascade<char>;
extern template class BasicCascade<char16_t>;

using ReplacementPair = BasicReplacementPair<char16_t>;

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// A text to find, literally and with exact case, and its replacement. An empty text to find never
/// matches.
template <typename Unit>
struct BasicReplacementPair {
    std::basic_string<Unit> find;
    std::basic_string<Unit> replace;
};

/// Applies an ordered list of pairs. Each pair replaces every occurrence of its find text, from
/// left to right and without overlap, in the result of the pairs before it. A pair does not search
/// what it has inserted. docs/CASCADE.md explains the method.
///
/// It exists for bytes and for 16-bit units. The constructor prepares every pair; Apply reuses its
/// memory. One object must not be used by several threads at once.
template <typename Unit>
class BasicCascade {
public:
    using View = std::basic_string_view<Unit>;

    explicit BasicCascade(std::vector<BasicReplacementPair<Unit>> pairs);

    /// Sets `result`, which must not contain `text`, to the changed text. Returns false if nothing
    /// was found; then the value of `result` has no meaning.
    bool Apply(View text, std::basic_string<Unit>& result) const {
        return method_->Apply(text, result);
    }

    /// One of the methods to apply the pairs.
    class Method {
    public:
        Method() = default;
        Method(const Method&) = delete;
        Method& operator=(const Method&) = delete;
        virtual ~Method() = default;
        virtual bool Apply(std::basic_string_view<Unit> text, std::basic_string<Unit>& result) = 0;
    };

private:
    std::unique_ptr<Method> method_;
};

extern template class BasicCascade<char>;
extern template class BasicCascade<char16_t>;

using ReplacementPair = BasicReplacementPair<char16_t>;

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <utility>

namespace vexmarrow {

/// Calls a function at the end of a scope, even if an exception ends it.
template <typename Function>
class AtScopeEnd {
public:
    explicit AtScopeEnd(Function function) : function_(std::move(function)) {}
    ~AtScopeEnd() { function_(); }
    AtScopeEnd(const AtScopeEnd&) = delete;
    AtScopeEnd& operator=(const AtScopeEnd&) = delete;

private:
    Function function_;
};

} // namespace vexmarrow

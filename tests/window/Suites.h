// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <string_view>

namespace vexmarrow::test {

/// What makes each suite, by the suite's name.
inline std::map<std::string_view, std::function<std::unique_ptr<QObject>()>>& Suites() {
    static std::map<std::string_view, std::function<std::unique_ptr<QObject>()>> suites;
    return suites;
}

/// Adds a suite before the program begins; returns true.
template <typename Suite>
bool AddSuite(std::string_view name) {
    return Suites().emplace(name, [] { return std::make_unique<Suite>(); }).second;
}

} // namespace vexmarrow::test

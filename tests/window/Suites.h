// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

namespace vexmarrow::test {

std::unique_ptr<QObject> MakeBoxesTest();
std::unique_ptr<QObject> MakeControlsTest();
std::unique_ptr<QObject> MakeListTest();
std::unique_ptr<QObject> MakeLooksTest();
std::unique_ptr<QObject> MakeRunTest();
std::unique_ptr<QObject> MakeStartupTest();

} // namespace vexmarrow::test

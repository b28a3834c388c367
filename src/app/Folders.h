// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace vexmarrow {

/// Sets the environment variable HOME from the user database if it names no full path. Settings,
/// logs and the desktop folder depend on it. If the database does not know the user either, HOME is
/// removed and "/" is used. Call this before anything else, even before the application object
/// exists.
void SettleHomeFolder();

/// The user's desktop folder, with exactly one separator at its end.
std::u16string DesktopFolder();

/// The folder of the program file, without a separator at its end.
std::u16string ProgramFolder();

} // namespace vexmarrow

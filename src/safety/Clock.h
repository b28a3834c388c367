// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>

namespace vexmarrow {

/// The present time in nanoseconds since 1970.
std::int64_t Now();

/// Such a time in local time: for people to read, or in a format of strftime.
std::u16string LocalTime(std::int64_t nanoseconds);
std::string LocalTime(std::int64_t nanoseconds, const char* format);

} // namespace vexmarrow

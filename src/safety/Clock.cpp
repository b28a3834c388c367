// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/Clock.h"

#include "base/Utf8.h"

#include <array>
#include <chrono>
#include <ctime>

namespace vexmarrow {

std::int64_t Now() {
    using namespace std::chrono;
    return duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
}

std::string LocalTime(std::int64_t nanoseconds, const char* format) {
    constexpr std::int64_t kPerSecond = 1'000'000'000;
    const std::time_t seconds = nanoseconds / kPerSecond;
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), format, &parts);
    return {text.data(), length};
}

std::u16string LocalTime(std::int64_t nanoseconds) {
    return TextFromUtf8(LocalTime(nanoseconds, "%Y-%m-%d %H:%M:%S"));
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <sys/random.h>

namespace vexmarrow {

/// 64 random bits that nobody can guess.
inline std::uint64_t RandomNumber() {
    std::uint64_t number = 0;
    while (::getrandom(&number, sizeof number, 0) != sizeof number) {
        // Only a signal that arrives early makes this fail.
    }
    return number;
}

/// A number of such random bytes, in hexadecimal.
inline std::string RandomHex(std::size_t bytes) {
    constexpr std::string_view kHex = "0123456789abcdef";
    std::string text;
    while (text.size() < 2 * bytes) {
        text += kHex[RandomNumber() % kHex.size()];
    }
    return text;
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/TextFormat.h"

#include <array>
#include <utility>

namespace vexmarrow {
namespace {

using namespace std::string_view_literals;

/// The first mark that fits decides. UTF-32 comes first, because its mark begins with that of
/// UTF-16.
constexpr std::array kMarks{
    std::pair{"\xFF\xFE\0\0"sv, Mark::Unicode}, // UTF-32, low byte first
    std::pair{"\0\0\xFE\xFF"sv, Mark::Unicode}, // UTF-32, high byte first
    std::pair{kUtf8Mark, Mark::Utf8},           std::pair{kUtf16Mark, Mark::Unicode},
    std::pair{"\xFE\xFF"sv, Mark::Unicode}, // UTF-16, high byte first
};

} // namespace

Mark MarkOf(std::string_view firstBytes) {
    for (const auto& [bytes, mark] : kMarks) {
        if (firstBytes.starts_with(bytes)) {
            return mark;
        }
    }
    return Mark::None;
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/PhysicalLine.h"

#include <algorithm>
#include <cstring>

namespace vexmarrow::vcard {
namespace {

/// Where the first such byte is; the size of the text if there is none.
std::size_t IndexOf(char byte, std::string_view text) {
    const void* const found = std::memchr(text.data(), byte, text.size());
    return found == nullptr
               ? text.size()
               : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

} // namespace

std::size_t FindLineEnd(std::string_view text, std::size_t from) {
    constexpr std::size_t kStretch = 512; // limits the search for LF where every line ends with CR
    for (; from < text.size(); from += kStretch) {
        const std::string_view stretch = text.substr(from, kStretch);
        const std::size_t feed = IndexOf('\n', stretch);
        const std::size_t end = IndexOf('\r', stretch.substr(0, feed));
        if (end < stretch.size()) {
            return from + end;
        }
    }
    return std::string_view::npos;
}

bool PhysicalLine::Find(const Window& window, std::size_t from) {
    const std::string_view text = window.text;
    begin = from;
    end = FindLineEnd(text, from);
    if (end == std::string_view::npos) {
        end = next = text.size();
        return window.isAtEnd;
    }
    if (!window.isAtEnd && text[end] == '\r' && text.size() - end < kLongestLineEnd) {
        next = text.size();
        return false;
    }
    next = end + LengthOfLineEnd(text.substr(end, kLongestLineEnd));
    return true;
}

} // namespace vexmarrow::vcard

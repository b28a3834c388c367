// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/PhysicalLine.h"

#include <algorithm>
#include <cstring>

namespace vexmarrow::vcard {
namespace {

std::size_t Find(std::string_view text, char byte) {
    const void* const found = std::memchr(text.data(), byte, text.size());
    return found == nullptr
               ? text.size()
               : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

} // namespace

std::size_t FindLineEnd(std::string_view window, std::size_t from) {
    constexpr std::size_t kStretch = 512; // a text may have only one of the two
    for (; from < window.size(); from += kStretch) {
        const std::string_view stretch = window.substr(from, kStretch);
        const std::size_t feed = vcard::Find(stretch, '\n');
        const std::size_t end = vcard::Find(stretch.substr(0, feed), '\r');
        if (end < stretch.size()) {
            return from + end;
        }
    }
    return std::string_view::npos;
}

bool PhysicalLine::Find(std::string_view window, bool atEnd, std::size_t from) {
    begin = from;
    end = FindLineEnd(window, from);
    if (end == std::string_view::npos) {
        end = next = window.size();
        return atEnd;
    }
    if (!atEnd && window[end] == '\r' && window.size() - end < kLongestLineEnd) {
        next = window.size();
        return false;
    }
    next = end + LengthOfLineEnd(window.substr(end, kLongestLineEnd));
    return true;
}

} // namespace vexmarrow::vcard

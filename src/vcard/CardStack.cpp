// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/CardStack.h"

#include "vcard/Header.h"
#include "vcard/PhysicalLine.h"

#include <algorithm>

namespace vexmarrow::vcard {
namespace {

constexpr std::size_t kVersionReach = std::size_t{64} * 1024; // bytes from BEGIN to VERSION

/// The version of the card at the beginning of a window: the first VERSION line of its own counts.
Version FindVersion(std::string_view window) {
    PhysicalLine line;
    std::size_t depth = 0;
    bool isAfterEmptyAgent = false;
    line.Find({window, true}, 0);
    while (line.next < std::min(window.size(), kVersionReach)) {
        line.Find({window, true}, line.next);
        const std::string_view content = line.In(window);
        const Frame frame = FrameOf(content);
        if (frame == Frame::Version && depth == 0) {
            return VersionOf(content);
        }
        if (frame == Frame::End ? depth-- == 0 : frame == Frame::Begin && !isAfterEmptyAgent) {
            break;
        }
        depth += frame == Frame::Begin ? 1 : 0;
        isAfterEmptyAgent = IsEmptyAgent(content, ReadHeader(content, Version::Later));
    }
    return Version::Later;
}

} // namespace

void CardStack::Begin(std::string_view window, bool isWithin) {
    if (!isWithin) {
        open_.clear();
    }
    // Cards that are nested deeply are not searched for a version, which would take long for each.
    constexpr std::size_t kDeep = 16;
    open_.push_back({open_.size() < kDeep ? FindVersion(window) : Version::Later, begun_++});
}

} // namespace vexmarrow::vcard

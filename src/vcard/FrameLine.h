// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

namespace vexmarrow::vcard {

/// The lines that frame a card and are never searched.
enum class Frame { None, Begin, End, Version };

/// The frame line that a physical line would be, wherever it stands.
Frame FrameOf(std::string_view line);

/// Whether such a line is a frame line where it stands: outside cards, only BEGIN is.
constexpr bool IsFrame(Frame frame, bool inCard) {
    return frame == Frame::Begin || (inCard && frame != Frame::None);
}

/// Whether `line` begins like a frame line. What follows may show that it is none.
bool BeginsLikeFrame(std::string_view line);

/// The two families of versions: 3.0, 4.0 and unknown versions are read alike.
enum class Version { TwoOne, Later };

/// The version that a VERSION line names.
Version VersionOf(std::string_view line);

} // namespace vexmarrow::vcard

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/FrameLine.h"

#include "vcard/Ascii.h"

namespace vexmarrow::vcard {
namespace {

constexpr std::string_view kBegin = "begin:vcard";
constexpr std::string_view kEnd = "end:vcard";

bool IsVersion(std::string_view line) {
    return BeginsWithWord(line, "version:") || BeginsWithWord(line, "version;");
}

} // namespace

Frame FrameOf(std::string_view line) {
    if (line.empty()) {
        return Frame::None;
    }
    switch (InLower(line.front())) {
    case 'b':
        return IsWord(WithoutBlanksAtEnd(line), kBegin) ? Frame::Begin : Frame::None;
    case 'e':
        return IsWord(WithoutBlanksAtEnd(line), kEnd) ? Frame::End : Frame::None;
    case 'v':
        return IsVersion(line) ? Frame::Version : Frame::None;
    default:
        return Frame::None;
    }
}

bool BeginsLikeFrame(std::string_view line) {
    return BeginsWithWord(line, kBegin) || BeginsWithWord(line, kEnd) || IsVersion(line);
}

Version VersionOf(std::string_view line) {
    const std::size_t colon = line.find(':');
    const bool isTwoOne =
        colon != std::string_view::npos && WithoutBlanks(line.substr(colon + 1)) == "2.1";
    return isTwoOne ? Version::TwoOne : Version::Later;
}

} // namespace vexmarrow::vcard

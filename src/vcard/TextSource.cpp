// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/TextSource.h"

#include "base/Failure.h"
#include "textio/InputFile.h"
#include "vcard/Units.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace vexmarrow::vcard {
namespace {

using namespace std::string_view_literals;

struct Encoding {
    std::string_view markBytes;
    EncodingMark mark;
    std::size_t width; // bytes of a unit
};

/// In the order of the enumeration. Of the marks that fit, the last one counts: that of UTF-32
/// begins like that of UTF-16.
constexpr std::array kEncodings{
    Encoding{""sv, EncodingMark::None, 1},
    Encoding{"\xEF\xBB\xBF"sv, EncodingMark::Utf8, 1},
    Encoding{"\xFF\xFE"sv, EncodingMark::Utf16Le, 2},
    Encoding{"\xFE\xFF"sv, EncodingMark::Utf16Be, 2},
    Encoding{"\xFF\xFE\0\0"sv, EncodingMark::Utf32Le, 4},
    Encoding{"\0\0\xFE\xFF"sv, EncodingMark::Utf32Be, 4},
};

const Encoding& EncodingOf(EncodingMark mark) {
    return kEncodings.at(static_cast<std::size_t>(mark));
}

EncodingMark MarkOf(std::string_view firstBytes) {
    const auto found =
        std::find_if(kEncodings.rbegin(), kEncodings.rend(), [&](const Encoding& encoding) {
            return firstBytes.starts_with(encoding.markBytes);
        });
    return found->mark;
}

bool IsBigEndian(EncodingMark mark) {
    return mark == EncodingMark::Utf16Be || mark == EncodingMark::Utf32Be;
}

std::uint32_t UnitOf(std::string_view bytes, bool isBigEndian) {
    std::uint32_t unit = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::size_t at = isBigEndian ? i : bytes.size() - 1 - i;
        unit = unit << 8U | static_cast<unsigned char>(bytes[at]);
    }
    return unit;
}

void AppendBytes(std::uint32_t unit, std::size_t width, bool isBigEndian, std::string& bytes) {
    for (std::size_t i = 0; i < width; ++i) {
        const std::size_t shift = isBigEndian ? width - 1 - i : i;
        bytes.push_back(static_cast<char>(unit >> (8 * shift) & 0xFFU));
    }
}

constexpr std::size_t kLongestMark = 4;
constexpr std::size_t kBlock = std::size_t{64} * 1024; // bytes that are converted at once

} // namespace

TextSource::TextSource(InputFile& file) : file_(&file), mark_(MarkOf(file.Peek(kLongestMark))) {
    file_->Skip(MarkBytes().size());
}

std::string_view TextSource::MarkBytes() const {
    return EncodingOf(mark_).markBytes;
}

std::string_view TextSource::Peek(std::size_t least) {
    if (file_ == nullptr) {
        return whole_;
    }
    if (!IsWide(mark_)) {
        return file_->Peek(least);
    }
    const std::size_t width = EncodingOf(mark_).width;
    while (text_.size() - begin_ < least) {
        std::string_view bytes = file_->Peek(kBlock);
        if (bytes.size() < width) {
            tornUnit_ = bytes;
            break;
        }
        text_.erase(0, std::exchange(begin_, 0));
        bytes = bytes.substr(0, bytes.size() / width * width);
        const std::string_view last = bytes.substr(bytes.size() - width);
        // The two halves of a code point stay together, unless the file ends between them.
        if (width == 2 && bytes.size() > width && IsHighHalf(UnitOf(last, IsBigEndian(mark_)))) {
            bytes.remove_suffix(width);
        }
        Convert(bytes);
        file_->Skip(bytes.size());
    }
    return std::string_view(text_).substr(begin_);
}

void TextSource::Convert(std::string_view bytes) {
    const std::size_t width = EncodingOf(mark_).width;
    for (std::size_t at = 0; at < bytes.size(); at += width) {
        char32_t unit = UnitOf(bytes.substr(at, width), IsBigEndian(mark_));
        if (width == 2 && IsHighHalf(unit) && at + width < bytes.size()) {
            const char32_t next = UnitOf(bytes.substr(at + width, width), IsBigEndian(mark_));
            if (IsLowHalf(next)) {
                unit = JoinHalves(unit, next);
                at += width;
            }
        }
        AppendUnit(unit, text_);
    }
}

void TextSource::Skip(std::size_t count) {
    if (file_ == nullptr) {
        whole_.remove_prefix(count);
    } else if (IsWide(mark_)) {
        begin_ += count;
    } else {
        file_->Skip(count);
    }
}

void TextSource::Rewind() {
    file_->Rewind();
    if (!file_->Peek(kLongestMark).starts_with(MarkBytes())) { // cut since Rewind has checked it
        throw Failure(u"The file was cut while it was read.");
    }
    file_->Skip(MarkBytes().size());
    text_.clear();
    begin_ = 0;
    tornUnit_.clear();
}

std::string_view TextSource::ToFileBytes(std::string_view text, std::string& room) const {
    if (!IsWide(mark_)) {
        return text;
    }
    const std::size_t width = EncodingOf(mark_).width;
    const bool isBigEndian = IsBigEndian(mark_);
    room.clear();
    for (std::size_t at = 0; at < text.size();) {
        const Unit unit = UnitAt(text, at);
        at += unit.length;
        if (width == 2 && unit.value >= 0x10000) {
            AppendBytes(HighHalfOf(unit.value), width, isBigEndian, room);
            AppendBytes(LowHalfOf(unit.value), width, isBigEndian, room);
        } else {
            AppendBytes(unit.value, width, isBigEndian, room);
        }
    }
    return room;
}

std::size_t TextSource::CountUnits(std::string_view text) const {
    if (!IsWide(mark_)) {
        return text.size();
    }
    std::size_t units = 0;
    for (const char byte : text) {
        units += ContinuesUnit(byte) ? 0 : 1;
        units += EncodingOf(mark_).width == 2 && static_cast<unsigned char>(byte) >= 0xF0 ? 1 : 0;
    }
    return units;
}

} // namespace vexmarrow::vcard

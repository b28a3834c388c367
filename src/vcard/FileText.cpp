// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/FileText.h"

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

struct Marked {
    std::string_view mark;
    FileForm form;
    std::size_t width; // bytes of a unit
};

/// In the order of the forms. Of the marks that fit, the last one counts: that of UTF-32 begins
/// like that of UTF-16.
constexpr std::array kForms{
    Marked{""sv, FileForm::Unmarked, 1},
    Marked{"\xEF\xBB\xBF"sv, FileForm::Utf8, 1},
    Marked{"\xFF\xFE"sv, FileForm::Utf16, 2},
    Marked{"\xFE\xFF"sv, FileForm::Utf16Swapped, 2},
    Marked{"\xFF\xFE\0\0"sv, FileForm::Utf32, 4},
    Marked{"\0\0\xFE\xFF"sv, FileForm::Utf32Swapped, 4},
};

const Marked& Of(FileForm form) {
    return kForms.at(static_cast<std::size_t>(form));
}

FileForm FormOf(std::string_view firstBytes) {
    const auto found = std::find_if(kForms.rbegin(), kForms.rend(), [&](const Marked& form) {
        return firstBytes.starts_with(form.mark);
    });
    return found->form;
}

bool IsSwapped(FileForm form) {
    return form == FileForm::Utf16Swapped || form == FileForm::Utf32Swapped;
}

std::uint32_t UnitOf(std::string_view bytes, bool isSwapped) {
    std::uint32_t unit = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::size_t at = isSwapped ? i : bytes.size() - 1 - i;
        unit = unit << 8U | static_cast<unsigned char>(bytes[at]);
    }
    return unit;
}

void AppendBytes(std::uint32_t unit, std::size_t width, bool isSwapped, std::string& bytes) {
    for (std::size_t i = 0; i < width; ++i) {
        const std::size_t shift = isSwapped ? width - 1 - i : i;
        bytes.push_back(static_cast<char>(unit >> (8 * shift) & 0xFFU));
    }
}

constexpr std::size_t kLongestMark = 4;
constexpr std::size_t kBlock = std::size_t{64} * 1024; // bytes that are converted at once

} // namespace

FileText::FileText(InputFile& file) : file_(&file), form_(FormOf(file.Peek(kLongestMark))) {
    file_->Skip(Mark().size());
}

std::string_view FileText::Mark() const {
    return Of(form_).mark;
}

std::string_view FileText::Peek(std::size_t least) {
    if (file_ == nullptr) {
        return whole_;
    }
    if (!IsWide(form_)) {
        return file_->Peek(least);
    }
    const std::size_t width = Of(form_).width;
    while (text_.size() - begin_ < least) {
        std::string_view bytes = file_->Peek(kBlock);
        if (bytes.size() < width) {
            rest_ = bytes;
            break;
        }
        text_.erase(0, std::exchange(begin_, 0));
        bytes = bytes.substr(0, bytes.size() / width * width);
        const std::string_view last = bytes.substr(bytes.size() - width);
        // A code point of two units is not torn, unless the file ends in its middle.
        if (width == 2 && bytes.size() > width && IsHighHalf(UnitOf(last, IsSwapped(form_)))) {
            bytes.remove_suffix(width);
        }
        Convert(bytes);
        file_->Skip(bytes.size());
    }
    return std::string_view(text_).substr(begin_);
}

void FileText::Convert(std::string_view bytes) {
    const std::size_t width = Of(form_).width;
    char32_t high = 0;
    for (; !bytes.empty(); bytes.remove_prefix(width)) {
        const char32_t unit = UnitOf(bytes.substr(0, width), IsSwapped(form_));
        if (high != 0 && IsLowHalf(unit)) {
            AppendUnit(Joined(high, unit), text_);
            high = 0;
            continue;
        }
        if (high != 0) {
            AppendUnit(std::exchange(high, 0), text_);
        }
        if (width == 2 && IsHighHalf(unit)) {
            high = unit;
        } else {
            AppendUnit(unit, text_);
        }
    }
    if (high != 0) {
        AppendUnit(high, text_);
    }
}

void FileText::Skip(std::size_t count) {
    if (file_ == nullptr) {
        whole_.remove_prefix(count);
    } else if (IsWide(form_)) {
        begin_ += count;
    } else {
        file_->Skip(count);
    }
}

void FileText::Rewind() {
    file_->Rewind();
    if (!file_->Peek(kLongestMark).starts_with(Mark())) { // cut within the moment since then
        throw Failure(u"The file was cut while it was read.");
    }
    file_->Skip(Mark().size());
    text_.clear();
    begin_ = 0;
    rest_.clear();
}

std::string_view FileText::InFile(std::string_view text, std::string& room) const {
    if (!IsWide(form_)) {
        return text;
    }
    const std::size_t width = Of(form_).width;
    const bool isSwapped = IsSwapped(form_);
    room.clear();
    for (std::size_t at = 0; at < text.size();) {
        const Unit unit = UnitAt(text, at);
        at += unit.length;
        if (width == 2 && unit.value >= 0x10000) {
            AppendBytes(0xD7C0 + (unit.value >> 10U), width, isSwapped, room);
            AppendBytes(0xDC00 + (unit.value & 0x3FFU), width, isSwapped, room);
        } else {
            AppendBytes(unit.value, width, isSwapped, room);
        }
    }
    return room;
}

std::size_t FileText::UnitsOf(std::string_view text) const {
    if (!IsWide(form_)) {
        return text.size();
    }
    std::size_t units = 0;
    for (const char byte : text) {
        units += GoesOn(byte) ? 0 : 1;
        units += Of(form_).width == 2 && static_cast<unsigned char>(byte) >= 0xF0 ? 1 : 0;
    }
    return units;
}

} // namespace vexmarrow::vcard

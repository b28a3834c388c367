// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/RFTSFSO.h"

#include "base/Failure.h"
#include "textio/CodePage.h"

#include <cstdint>
#include <utility>

namespace vexmarrow {

bool RFTSFSO::DetectTextEncoding(std::u16string_view path) {
    flags_.IsUtf8 = false;
    InputFile file = OpenBytes(path, Use::Read);
    return Detect(file);
}

int RFTSFSO::FileSize2(std::u16string_view path, Use use) {
    opened_.reset();
    try {
        opened_.emplace(calls_, path, use);
    } catch (const Failure&) {
        return -1;
    }
    const auto size = static_cast<std::int32_t>(static_cast<std::uint32_t>(opened_->Status().size));
    if (size <= 0) {
        opened_.reset(); // nobody is going to read it
    }
    return size;
}

/// Uses the file that FileSize2 has opened if it has the very same path. If not, that file is
/// closed first, because another path may lead to the same file, which its lock would block.
InputFile RFTSFSO::OpenBytes(std::u16string_view path, Use use) {
    std::optional<InputFile> opened = std::exchange(opened_, std::nullopt);
    if (opened && opened->Path() == path) {
        return std::move(*opened);
    }
    opened.reset();
    return {calls_, path, use};
}

bool RFTSFSO::Detect(InputFile& file) {
    const Mark mark = MarkOf(file.Peek(kLongestMark));
    flags_.IsUtf8 = mark == Mark::Utf8;
    return mark == Mark::Unicode;
}

/// Opens the file once, for the detection and for the reading that follows.
InputFile RFTSFSO::OpenDetected(std::u16string_view path, Use use) {
    flags_.IsUtf8 = false;
    InputFile file = OpenBytes(path, use);
    flags_.IsUnicode = Detect(file);
    return file;
}

TextFormat RFTSFSO::DetectedFormat() const {
    if (flags_.IsUtf8) {
        return TextFormat::Utf8;
    }
    return flags_.IsUnicode ? TextFormat::Utf16 : TextFormat::Ansi;
}

TextLines RFTSFSO::OpenTextLines(std::u16string_view path, Use use) {
    InputFile file = OpenDetected(path, use);
    return {std::move(file), DetectedFormat(), ansi_.Page()};
}

std::vector<std::u16string> RFTSFSO::ReadTextLines(std::u16string_view path) {
    TextLines lines = OpenTextLines(path);
    std::vector<std::u16string> all;
    for (std::u16string_view line; lines.Next(line);) {
        all.emplace_back(line);
    }
    lines.Finish();
    return all;
}

TextPieces RFTSFSO::ReadTextChunks(std::u16string_view path, Use use) {
    InputFile file = OpenDetected(path, use);
    return {std::move(file), DetectedFormat(), ansi_.Page()};
}

TextPieces RFTSFSO::ReadChunksByStream(std::u16string_view path, Use use) {
    return {OpenBytes(path, use), flags_.IsUnicode ? TextFormat::Utf16 : TextFormat::Ansi,
            ansi_.Page()};
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/RFTSFSO.h"

#include "base/Text.h"
#include "base/Utf8.h"
#include "textio/CodePage.h"
#include "textio/InputFile.h"

#include <array>

namespace vexmarrow {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF"sv;
constexpr std::string_view kUtf16Mark = "\xFF\xFE"sv;
constexpr std::size_t kLongestMark = 4;

/// Marks in the order of the tests: the first one that fits decides.
struct Mark {
    std::string_view bytes;
    bool unicode;
};
constexpr std::array kMarks{
    Mark{"\xFF\xFE\0\0"sv, true}, // UTF-32, low byte first
    Mark{"\0\0\xFE\xFF"sv, true}, // UTF-32, high byte first
    Mark{kUtf8Mark, false},       Mark{kUtf16Mark, true},
    Mark{"\xFE\xFF"sv, true}, // UTF-16, high byte first
};

/// UTF-16 with the low byte first, whatever the bytes are: a lone last byte is a unit with a high
/// byte of zero, and surrogates need no partner.
std::u16string TextFromUtf16(std::string_view bytes) {
    std::u16string text((bytes.size() + 1) / 2, u'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        text[i / 2] = static_cast<char16_t>(text[i / 2] | (i % 2 == 0 ? byte : byte << 8U));
    }
    return text;
}

std::u16string TextAfterUtf8Mark(std::string_view bytes) {
    if (bytes.starts_with(kUtf8Mark)) {
        bytes.remove_prefix(kUtf8Mark.size());
    }
    return TextFromUtf8(bytes);
}

std::vector<std::u16string> LinesOfStream(std::u16string_view text) {
    std::vector<std::u16string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of(kCrLf);
        lines.emplace_back(text.substr(0, end));
        if (end == std::u16string_view::npos) {
            break;
        }
        text.remove_prefix(end + (text.substr(end).starts_with(kCrLf) ? 2 : 1));
    }
    if (lines.empty()) {
        lines.emplace_back();
    }
    return lines;
}

std::vector<std::u16string> PiecesOf(std::u16string_view text) {
    std::vector<std::u16string> pieces;
    do {
        pieces.emplace_back(text.substr(0, kPieceSize));
        text.remove_prefix(pieces.back().size());
    } while (!text.empty());
    return pieces;
}

} // namespace

std::vector<std::u16string> SplitTextLines(std::u16string_view text) {
    const std::vector<std::u16string_view> parts = Split(text, kCrLf);
    if (parts.empty()) {
        return std::vector<std::u16string>(1);
    }
    return {parts.begin(), parts.end()};
}

bool RFTSFSO::DetectTextEncoding(std::u16string_view path) {
    InputFile file = BeginDetection(path);
    std::string firstBytes;
    return Detect(file, firstBytes);
}

InputFile RFTSFSO::BeginDetection(std::u16string_view path) {
    flags_.IsUtf8 = false;
    return {calls_, path};
}

bool RFTSFSO::Detect(InputFile& file, std::string& firstBytes) {
    firstBytes = file.Read(kLongestMark);
    for (const Mark& mark : kMarks) {
        if (firstBytes.starts_with(mark.bytes)) {
            flags_.IsUtf8 = mark.bytes == kUtf8Mark;
            return mark.unicode;
        }
    }
    return false;
}

/// The whole file, opened once for the detection and the reading that follows it.
std::string RFTSFSO::ReadDetected(std::u16string_view path) {
    InputFile file = BeginDetection(path);
    std::string bytes;
    flags_.IsUnicode = Detect(file, bytes);
    bytes += file.ReadRest();
    return bytes;
}

std::u16string RFTSFSO::StreamText(std::string_view bytes) const {
    if (!flags_.IsUnicode) {
        std::u16string text;
        ansi_.Page().Decode(bytes, text);
        return text;
    }
    if (bytes.starts_with(kUtf16Mark)) {
        bytes.remove_prefix(kUtf16Mark.size());
    }
    return TextFromUtf16(bytes);
}

std::vector<std::u16string> RFTSFSO::ReadTextLines(std::u16string_view path) {
    const std::string bytes = ReadDetected(path);
    return flags_.IsUtf8 ? SplitTextLines(TextAfterUtf8Mark(bytes))
                         : LinesOfStream(StreamText(bytes));
}

std::vector<std::u16string> RFTSFSO::ReadTextChunks(std::u16string_view path) {
    const std::string bytes = ReadDetected(path);
    if (flags_.IsUtf8) {
        return {TextAfterUtf8Mark(bytes)};
    }
    return PiecesOf(StreamText(bytes));
}

std::vector<std::u16string> RFTSFSO::ReadChunksByStream(std::u16string_view path) {
    InputFile file(calls_, path);
    return PiecesOf(StreamText(file.ReadRest()));
}

} // namespace vexmarrow

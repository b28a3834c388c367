// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/TextReaders.h"

#include "base/Utf8.h"
#include "textio/CodePage.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace vexmarrow {
namespace {

/// A UTF-8 character of two units has two bytes for each of them.
constexpr std::size_t kHalf = 2;

/// The least number of bytes to ask a file for.
constexpr std::size_t kFirstLook = 4096;

std::size_t BytesPerCharacter(TextFormat format) {
    return format == TextFormat::Utf16 ? 2 : 1;
}

/// Decodes any bytes as UTF-16 with the low byte first. A single last byte becomes a unit with a
/// high byte of zero, and lone surrogates are kept.
void DecodeUtf16(std::string_view bytes, std::u16string& text) {
    static_assert(std::endian::native == std::endian::little, "units are copied as they are");
    text.resize((bytes.size() + 1) / 2);
    if (!text.empty()) {
        text.back() = u'\0';
        std::memcpy(text.data(), bytes.data(), bytes.size());
    }
}

/// The character that begins at byte `at`.
char16_t CharacterAt(std::string_view bytes, std::size_t at, TextFormat format) {
    auto character = static_cast<char16_t>(static_cast<unsigned char>(bytes[at]));
    if (format == TextFormat::Utf16 && at + 1 < bytes.size()) {
        character =
            static_cast<char16_t>(character | static_cast<unsigned char>(bytes[at + 1]) << 8U);
    }
    return character;
}

/// Where the first CR or LF in bytes of a code page is. Searches one short stretch after another,
/// because a text may have only one of the two.
std::size_t FindLineEndByte(std::string_view bytes, std::size_t from) {
    constexpr std::size_t kStretch = 256;
    for (; from < bytes.size(); from += kStretch) {
        std::string_view stretch = bytes.substr(from, kStretch);
        stretch = stretch.substr(0, stretch.find('\n'));
        const std::size_t end = std::min(stretch.find('\r'), stretch.size());
        if (end < kStretch) {
            return from + end;
        }
    }
    return bytes.size();
}

/// Where the first CR or LF from `from` on begins; the number of bytes if there is none. Both have
/// their ASCII codes in every code page.
std::size_t FindLineEnd(std::string_view bytes, std::size_t from, TextFormat format) {
    if (format == TextFormat::Ansi) {
        return FindLineEndByte(bytes, from);
    }
    for (; from < bytes.size(); from += 2) {
        const char16_t character = CharacterAt(bytes, from, format);
        if (character == u'\r' || character == u'\n') {
            return from;
        }
    }
    return bytes.size();
}

} // namespace

TextReader::TextReader(InputFile file, TextFormat format, const CodePage& page)
    : file_(std::move(file)), format_(format), page_(page) {
    const std::string_view mark = format == TextFormat::Utf8    ? kUtf8Mark
                                  : format == TextFormat::Utf16 ? kUtf16Mark
                                                                : std::string_view();
    if (file_.Peek(mark.size()).starts_with(mark)) {
        file_.Skip(mark.size());
    }
}

/// Cuts off the bytes of characters of which only one half belongs to the piece.
std::string_view TextReader::WithoutHalves(std::string_view bytes) const {
    bytes.remove_prefix(begin_ ? kHalf : 0);
    bytes.remove_suffix(end_ ? kHalf : 0);
    return bytes;
}

template <typename Text>
void TextReader::InsertHalves(Text& text) const {
    if (begin_) {
        text.insert(text.begin(), *begin_);
    }
    if (end_) {
        text.push_back(*end_);
    }
}

void TextReader::Show(std::string_view bytes, std::u16string_view& text) {
    if (format_ == TextFormat::Utf16) {
        DecodeUtf16(bytes, text_);
    } else if (format_ == TextFormat::Utf8) {
        text_ = TextFromUtf8(bytes);
    } else {
        text_.clear();
        page_.Decode(WithoutHalves(bytes), text_);
        InsertHalves(text_);
    }
    text = text_;
}

void TextReader::Show(std::string_view bytes, std::u32string_view& text) {
    wide_.clear();
    DecodeUtf8(WithoutHalves(bytes), wide_);
    InsertHalves(wide_);
    text = wide_;
}

void TextReader::Show(std::string_view bytes, std::string_view& text) {
    text = format_ == TextFormat::Utf8 ? WellFormedUtf8(bytes, utf8_) : bytes;
}

bool TextPieces::NextBytes(std::string_view& bytes) {
    if (format_ == TextFormat::Utf8) {
        bytes = PeekPart();
    } else if (format_ == TextFormat::Utf16) {
        bytes = file_.Peek(2 * kPieceSize).substr(0, 2 * kPieceSize);
    } else {
        bytes = PeekPiece();
    }
    if (bytes.empty() && begun_) {
        return false;
    }
    begun_ = true;
    file_.Skip(bytes.size());
    return true;
}

/// The bytes up to the last of `ends_` in a stretch that has any. No ill-formed part lies across an
/// ASCII character, so decoding the parts one by one gives the same text.
std::string_view TextPieces::PeekPart() {
    if (ends_.none()) {
        return file_.PeekAll();
    }
    const auto isEnd = [&](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return code < ends_.size() && ends_[code];
    };
    for (std::size_t least = kPieceSize;; least *= 2) {
        const std::string_view bytes = file_.Peek(least);
        if (bytes.size() < least) {
            return bytes;
        }
        const auto end = std::find_if(bytes.rbegin(), bytes.rend(), isEnd);
        if (end != bytes.rend()) {
            return bytes.substr(0, static_cast<std::size_t>(bytes.rend() - end));
        }
    }
}

/// The bytes of the next piece of text in the code page.
std::string_view TextPieces::PeekPiece() {
    begin_ = std::exchange(beginOfNext_, std::nullopt);
    end_.reset();
    // If the last piece ended with half a character, its other half is the first unit of this one.
    std::size_t length = begin_ ? kHalf : 0;
    std::size_t characters = begin_ ? 1 : 0;
    std::string_view bytes;
    for (bool more = true; more && characters < kPieceSize;) {
        const std::size_t lacking = kPieceSize - characters;
        const std::size_t least = length + std::max(lacking, kFirstLook);
        bytes = file_.Peek(least);
        more = bytes.size() >= least;
        if (bytes.size() - length <= lacking && !more) { // true of most files, and quicker
            return bytes;
        }
        const TextStretch stretch = page_.Measure(bytes.substr(length), lacking, more);
        length += stretch.bytes;
        characters += stretch.units;
    }
    if (characters > kPieceSize) {
        std::u16string parted;
        page_.Decode(bytes.substr(length - 2 * kHalf, 2 * kHalf), parted);
        end_ = parted.front();
        beginOfNext_ = parted.back();
        length -= kHalf;
    }
    return bytes.substr(0, length);
}

bool TextLines::NextOfStream(std::string_view& line) {
    const std::size_t width = BytesPerCharacter(format_);
    std::size_t wanted = kFirstLook;
    std::string_view bytes;
    const auto look = [&] {
        bytes = file_.Peek(wanted);
        if (bytes.size() >= wanted) { // before the end of the file, no character is cut in two
            bytes.remove_suffix(bytes.size() % width);
        }
    };
    look();
    std::size_t end = FindLineEnd(bytes, 0, format_);
    while (end == bytes.size() && bytes.size() >= wanted) {
        const std::size_t seen = bytes.size();
        wanted = seen * 2;
        look();
        end = FindLineEnd(bytes, seen, format_);
    }
    if (bytes.empty() && begun_) {
        return false;
    }
    begun_ = true;
    std::size_t next = end;
    if (end < bytes.size()) {
        next = std::min(end + width, bytes.size());
        if (CharacterAt(bytes, end, format_) == u'\r') {
            bytes = file_.Peek(next + width);
            if (next < bytes.size() && CharacterAt(bytes, next, format_) == u'\n') {
                next = std::min(next + width, bytes.size());
            }
        }
    }
    line = bytes.substr(0, end);
    file_.Skip(next);
    return true;
}

/// Splits TextFormat::Utf8 at CR LF. No ill-formed part lies across a line end.
bool TextLines::SplitTextLines(std::string_view& line) {
    if (ended_) {
        return false;
    }
    constexpr std::string_view kLineEnd = "\r\n";
    std::string_view bytes;
    std::size_t end = std::string_view::npos;
    std::size_t seen = 0;
    for (std::size_t wanted = kFirstLook; end == std::string_view::npos; wanted = 2 * seen) {
        bytes = file_.Peek(wanted);
        end = bytes.find(kLineEnd, seen - std::min(seen, kLineEnd.size() - 1));
        seen = bytes.size();
        if (seen < wanted) {
            break;
        }
    }
    ended_ = end == std::string_view::npos;
    line = bytes.substr(0, end);
    file_.Skip(ended_ ? bytes.size() : end + kLineEnd.size());
    return true;
}

} // namespace vexmarrow

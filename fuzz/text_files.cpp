// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Text.h"
#include "base/Utf8.h"
#include "fuzz/MemoryFile.h"

#include <numeric>

// Reading a text file as pieces and as lines: the pieces, turned back into bytes, are the file, and
// the lines are those of the pieces.

namespace vexmarrow::fuzz {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kMark8 = "\xEF\xBB\xBF";
constexpr std::string_view kMark16 = "\xFF\xFE";

/// All pieces of the file.
Texts Pieces(RFTSFSO& textio, bool detected) {
    TextPieces reader = detected ? textio.ReadTextChunks(kPath) : textio.ReadChunksByStream(kPath);
    Texts pieces;
    for (std::u16string_view piece; reader.Next(piece);) {
        pieces.emplace_back(piece);
    }
    reader.Finish();
    return pieces;
}

/// Inserts so much into a file that the bytes behind it lie at the border of two pieces.
std::string Stretched(std::string bytes, std::uint8_t shape, std::uint8_t back) {
    static const std::string filling = [] {
        std::string made(2 * kPieceSize, 'A');
        for (std::size_t i = 0; i < made.size(); ++i) {
            made[i] = static_cast<char>('A' + i % 61);
        }
        return made;
    }();
    bytes.insert(std::min<std::size_t>(bytes.size(), std::size_t{2} * (shape % 4)), filling,
                 back % 32, kPieceSize * (1 + shape / 4 % 2) - back % 32);
    return bytes;
}

/// Compares the pieces with the file and returns the text that they make up. 16-bit characters are
/// compared as they lie in memory; the machine must be little-endian.
std::u16string TryPieces(const Texts& pieces, std::string_view file, const Reader& reader) {
    std::u16string text;
    for (const std::u16string& piece : pieces) {
        Require(&piece == &pieces.back() || piece.size() == kPieceSize, "pieces have one size");
        text += piece;
    }
    Require(!pieces.empty() && pieces.back().size() <= kPieceSize, "there is a last piece");
    Require(!pieces.back().empty() || pieces.size() == 1, "only that of an empty text is empty");
    std::string bytes;
    if (reader.flags.IsUnicode) {
        bytes.assign(reinterpret_cast<const char*>(text.data()), 2 * text.size());
        std::string whole(file.substr(file.starts_with(kMark16) ? kMark16.size() : 0));
        whole.append(whole.size() % 2, '\0');
        Require(bytes == whole, "the pieces are the bytes after the mark, a lone one with a zero");
    } else {
        reader.ansi.Page().Encode(text, bytes);
        Require(bytes == file, "the pieces are the bytes of the file");
    }
    return text;
}

void TryStreamLines(const Texts& lines, std::u16string_view text) {
    Require(!lines.empty(), "an empty text is one line");
    for (const std::u16string& line : lines) {
        Require(!text.empty() || &line == &lines.front(), "no line follows the end of the text");
        Require(text.substr(0, text.find_first_of(kCrLf)) == line, "a line ends at its line end");
        text.remove_prefix(line.size());
        text.remove_prefix(text.starts_with(kCrLf) ? 2 : text.empty() ? 0 : 1);
    }
    Require(text.empty(), "the lines reach to the end of the text");
}

/// Reads a UTF-8 file as bytes: they are well-formed, and pieces may come in parts.
void TryBytes(Reader& reader, std::u16string_view text, const AsciiSet& ends) {
    std::string all;
    reader.Try([&] {
        TextPieces pieces = reader.textio.ReadTextChunks(kPath);
        pieces.PartAfter(ends);
        bool begun = false;
        bool ended = true;
        all.clear();
        for (std::string_view part; pieces.Next(part); begun = true) {
            Require(ended && (!part.empty() || !begun), "parts end where they may");
            all += part;
            const auto last = static_cast<unsigned char>(part.empty() ? '\xFF' : part.back());
            ended = last < ends.size() && ends[last];
        }
        return Texts();
    });
    Require(reader.file.failed || all == NativeName(text), "the parts are the text in UTF-8");
    reader.Try([&] {
        TextLines lines = reader.textio.OpenTextLines(kPath);
        all.clear();
        for (std::string_view line; lines.Next(line);) {
            all.append(line).append("\r\n");
        }
        return Texts();
    });
    Require(reader.file.failed || all == NativeName(Concat(text, kCrLf)), "the lines are the text");
}

} // namespace

void TryInput(Input input) {
    // Long files take long, so only few inputs are stretched, chosen by a sum that variants change.
    const std::string_view all = input.Rest();
    const bool isLong = std::accumulate(all.begin(), all.end(), 0U) % 64 == 63;
    const std::uint8_t shape = input.Byte();
    const std::uint8_t back = input.Byte();
    Reader reader(input);
    AsciiSet ends; // the bytes after which a part may end
    ends.set(back % ends.size(), shape != 0);
    std::string file(input.Rest());
    file = isLong ? Stretched(file, shape, back) : file;
    reader.file.bytes = file;
    reader.flags.IsUnicode = back >= 0x80;
    if (const auto pieces = reader.Try([&] { return Pieces(reader.textio, false); })) {
        Require(reader.flags.IsUnicode == (back >= 0x80), "without detection the flags stay");
        TryPieces(*pieces, file, reader);
    }
    const auto lines = reader.TryLines();
    const auto pieces = reader.Try([&] { return Pieces(reader.textio, true); });
    if (!lines || !pieces) {
        return;
    }
    Require(reader.flags.IsUtf8 == file.starts_with(kMark8), "the UTF-8 mark is seen");
    Require(reader.flags.IsUnicode == (file.starts_with(kMark16) || file.starts_with("\xFE\xFF") ||
                                       file.starts_with("\0\0\xFE\xFF"sv)),
            "the other marks are seen");
    if (reader.flags.IsUtf8) {
        const std::u16string text = TextFromUtf8(file.substr(kMark8.size()));
        Require(*pieces == Texts{text}, "a UTF-8 file is one piece, without its mark");
        std::u16string joined;
        for (const std::u16string& line : *lines) {
            Require(line.find(kCrLf) == std::u16string::npos, "no line holds a CR LF");
            joined.append(line).append(kCrLf);
        }
        Require(joined == Concat(text, kCrLf), "the lines joined by CR LF are the text");
        TryBytes(reader, text, ends);
    } else {
        TryStreamLines(*lines, TryPieces(*pieces, file, reader));
    }
}

} // namespace vexmarrow::fuzz

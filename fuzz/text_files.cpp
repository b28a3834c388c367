// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "fuzz/Fuzz.h"
#include "textio/CodePage.h"
#include "textio/RFTSFSO.h"
#include "textio/SystemCalls.h"

#include <cerrno>
#include <numeric>
#include <optional>
#include <vector>

// Reading a text file as pieces and as lines: the pieces turned back into bytes are the file, and
// the lines are those of the pieces.

namespace vexmarrow::fuzz {
namespace {

using namespace std::string_view_literals;

using Texts = std::vector<std::u16string>;

/// The path of the one file there is, which is in memory.
const std::u16string kPath = u"/memory/file";

/// One file whose contents are in memory. How it is read is drawn from the input: a size told
/// wrongly, reads that give less than was asked for, that are interrupted or that fail.
class MemoryFile final : public SystemCalls {
public:
    explicit MemoryFile(Input& input) : toldSize_(input.Byte()), habits_(input.Bytes(4)) {
        habits_.resize(4);
    }

    std::string bytes;
    bool open = false;
    bool failed = false; ///< a read has been made to fail

    /// Another thing drawn from the input: whether text without a mark is UTF-8.
    bool PageIsUtf8() const { return toldSize_ / 4 % 2 != 0; }

    int Open(const std::string& path, int, mode_t) override {
        Require(!open && path == "/memory/file", "the right file is opened, and only once");
        open = true;
        position_ = reads_ = 0;
        return 1000;
    }
    int Status(int, FileStatus& status) override {
        const std::size_t told[] = {bytes.size(), 0, bytes.size() / 2, bytes.size() + 9};
        status = {};
        status.mode = S_IFREG;
        status.size = told[toldSize_ % 4];
        return 0;
    }
    int StatusOfTarget(const std::string&, FileStatus& status) override {
        return Status(0, status);
    }
    ssize_t Attribute(const std::string&, const char*, void*, std::size_t) override { return -1; }
    int Lock(int, int) override { return 0; }
    ssize_t Read(int, void* into, std::size_t count) override {
        Require(open, "an open file is read");
        // Habits are given up after a while: a long file must not come byte by byte to its end.
        const int habit = reads_ < 40 ? habits_[reads_ % 4] & 0xFF : 0;
        ++reads_;
        if (habit >= 0xFE) {
            failed = failed || habit == 0xFF;
            errno = habit == 0xFF ? EIO : EINTR;
            return -1;
        }
        count = habit == 0 ? count : std::min(count, static_cast<std::size_t>(habit));
        const std::size_t got = bytes.copy(static_cast<char*>(into), count, position_);
        position_ += got;
        return static_cast<ssize_t>(got);
    }
    int Close(int) override {
        open = false;
        return 0;
    }

private:
    int toldSize_;
    std::string habits_; // of four reads, again and again; 0: gives what is asked for
    std::size_t position_ = 0;
    std::size_t reads_ = 0;
};

/// A reader of that file, with all it needs.
struct Reader {
    explicit Reader(Input& input) : file(input) {}

    MemoryFile file;
    EncodingFlags flags;
    static inline const AnsiCodePage pages[]{AnsiCodePage(u"windows-1252"), AnsiCodePage(u"UTF-8")};
    const AnsiCodePage& ansi = pages[file.PageIsUtf8() ? 1 : 0];
    RFTSFSO textio{file, flags, ansi};

    /// What `read` returns; nothing when the file was made to fail, and only then.
    template <typename Read>
    std::optional<Texts> Try(Read read) {
        std::optional<Texts> texts;
        file.failed = false;
        try {
            texts = read();
        } catch (const Failure&) {
        }
        Require(texts.has_value() != file.failed, "a read fails when the system's does, only then");
        Require(!file.open, "the file is closed again");
        return texts;
    }
    std::optional<Texts> TryLines() {
        return Try([&] { return textio.ReadTextLines(kPath); });
    }
};

constexpr std::string_view kMark8 = "\xEF\xBB\xBF";
constexpr std::string_view kMark16 = "\xFF\xFE";

/// The one place that knows how pieces are asked for.
Texts Pieces(RFTSFSO& textio, bool detected) {
    TextPieces reader = detected ? textio.ReadTextChunks(kPath) : textio.ReadChunksByStream(kPath);
    Texts pieces;
    for (std::u16string_view piece; reader.Next(piece);) {
        pieces.emplace_back(piece);
    }
    reader.Finish();
    return pieces;
}

/// Puts as much into the middle of a file as brings the rest of it to the border of two pieces.
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

/// Returns the text that the pieces make up. Bytes of 16-bit characters are compared as they lie in
/// the memory of a machine that has the low one first.
std::u16string TryPieces(const Texts& pieces, std::string_view file, const Reader& reader) {
    std::u16string text;
    for (const std::u16string& piece : pieces) {
        Require(&piece == &pieces.back() || piece.size() == kPieceSize, "pieces have one size");
        text += piece;
    }
    Require(!pieces.empty() && pieces.back().size() <= kPieceSize, "there is a last piece");
    Require(!pieces.back().empty() || pieces.size() == 1, "only a text of nothing has it empty");
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

/// In bytes, a UTF-8 file is well-formed, and its pieces may come in parts.
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
    Require(reader.file.failed || all == NativeName(Concat(text, kCrLf)), "so are the lines");
}

} // namespace

void TryInput(Input input) {
    // Long files take long: it is one in so many, and few of those that a fuzzer makes of it.
    const std::string_view all = input.Rest();
    const bool longOne = std::accumulate(all.begin(), all.end(), 0U) % 64 == 63;
    const std::uint8_t shape = input.Byte();
    const std::uint8_t back = input.Byte();
    Reader reader(input);
    AsciiSet ends; // of parts
    ends.set(back % ends.size(), shape != 0);
    std::string file(input.Rest());
    file = longOne ? Stretched(file, shape, back) : file;
    reader.file.bytes = file;
    reader.flags.IsUnicode = back >= 0x80;
    if (const auto pieces = reader.Try([&] { return Pieces(reader.textio, false); })) {
        Require(reader.flags.IsUnicode == (back >= 0x80), "no detection, no change of the flags");
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

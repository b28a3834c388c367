// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/InputFile.h"
#include "textio/TextFormat.h"

#include <bitset>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vexmarrow {

class CodePage;

/// The number of 16-bit units in a piece of text.
inline constexpr std::size_t kPieceSize = 65536;

/// A set of ASCII characters.
using AsciiSet = std::bitset<128>;

/// What both readers of text files share: the file, and the forms in which they show its text. All
/// failures are thrown as Failure.
class TextReader {
public:
    /// Throws if the file was changed while it was read.
    void Finish() { file_.CheckUnchanged(); }

    TextFormat Format() const { return format_; }

    InputFile& File() { return file_; }

protected:
    /// Skips the mark, if there is one.
    TextReader(InputFile file, TextFormat format, const CodePage& page);

    /// Makes `text` a view of what `bytes` stand for, in one of three forms: 16-bit units; wide
    /// text (base/Utf8.h), only if the code page is UTF-8; or bytes, which are those of the file
    /// or, for TextFormat::Utf8, well-formed UTF-8. Valid until the next call.
    void Show(std::string_view bytes, std::u16string_view& text);
    void Show(std::string_view bytes, std::u32string_view& text);
    void Show(std::string_view bytes, std::string_view& text);

    InputFile file_;
    TextFormat format_;
    const CodePage& page_;
    bool begun_ = false;

    // Halves of characters that lie across the beginning and the end of what is shown.
    std::optional<char16_t> begin_;
    std::optional<char16_t> end_;

private:
    std::string_view WithoutHalves(std::string_view bytes) const;
    template <typename Text>
    void InsertHalves(Text& text) const;

    // One of these holds the text that is shown.
    std::u16string text_;
    std::u32string wide_;
    std::string utf8_;
};

/// Reads a text file piece by piece. TextFormat::Utf8 is one piece of any size. In the other
/// formats, every piece but the last has kPieceSize units. An empty file is one empty piece.
class TextPieces : public TextReader {
public:
    TextPieces(InputFile file, TextFormat format, const CodePage& page)
        : TextReader(std::move(file), format, page) {}

    /// Shows the next piece in the form that `piece` has: see TextReader::Show. False after the
    /// last one. As bytes, a character that lies across the end of a piece has half of them in
    /// each.
    template <typename View>
    bool Next(View& piece) {
        std::string_view bytes;
        const bool found = NextBytes(bytes);
        if (found) {
            Show(bytes, piece);
        }
        return found;
    }

    /// Makes Next show TextFormat::Utf8 in parts that end with one of `ends` or at the end of the
    /// file. So a file is in memory as a whole only if it has none of them.
    void PartAfter(const AsciiSet& ends) { ends_ = ends; }

private:
    bool NextBytes(std::string_view& bytes);
    std::string_view PeekPart();
    std::string_view PeekPiece();

    AsciiSet ends_;
    std::optional<char16_t> beginOfNext_; // the second half of the character at the end
};

/// Reads a text file line by line, without the line ends. In TextFormat::Utf8, only CR LF ends a
/// line, and an empty line follows a CR LF at the end of the file. In the other formats, CR LF, LF
/// and CR end a line, and no line follows the last line end. An empty file is one empty line.
class TextLines : public TextReader {
public:
    TextLines(InputFile file, TextFormat format, const CodePage& page)
        : TextReader(std::move(file), format, page) {}

    /// Shows the next line in the form that `line` has: see TextReader::Show. False after the last
    /// one.
    template <typename View>
    bool Next(View& line) {
        std::string_view bytes;
        const bool found =
            format_ == TextFormat::Utf8 ? SplitTextLines(bytes) : NextOfStream(bytes);
        if (found) {
            Show(bytes, line);
        }
        return found;
    }

private:
    bool NextOfStream(std::string_view& line);
    bool SplitTextLines(std::string_view& line);

    bool ended_ = false; // the last line of TextFormat::Utf8 has been shown
};

} // namespace vexmarrow

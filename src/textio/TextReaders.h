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

/// Characters in a piece of text: no replacement ever works on more at once.
inline constexpr std::size_t kPieceSize = 65536;

/// Some of the characters of ASCII.
using AsciiSet = std::bitset<128>;

/// What both readers of text files have: the file, and the forms in which they show its text. All
/// failures are thrown as Failure.
class TextReader {
public:
    /// Makes sure that the file was not changed while it was read.
    void Finish() { file_.CheckUnchanged(); }

    TextFormat Format() const { return format_; }

    /// The file that is read.
    InputFile& File() { return file_; }

protected:
    /// Begins behind the mark.
    TextReader(InputFile file, TextFormat format, const CodePage& page);

    /// Shows what stands in `bytes` in the form that `text` has: 16-bit characters, wide text where
    /// the code page is UTF-8, or bytes, which are well-formed UTF-8 for TextFormat::Utf8.
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

    // The text that is shown, in one of these.
    std::u16string text_;
    std::u32string wide_;
    std::string utf8_;
};

/// A text file on its way in, piece by piece. TextFormat::Utf8 is one piece of any size; of the
/// other formats each piece but the last has kPieceSize characters. An empty file is one empty
/// piece.
class TextPieces : public TextReader {
public:
    TextPieces(InputFile file, TextFormat format, const CodePage& page)
        : TextReader(std::move(file), format, page) {}

    /// Shows the next piece, which is valid until the next call. False after the last one. A
    /// std::u32string_view shows wide text (base/Utf8.h), where the code page is UTF-8. A
    /// std::string_view shows bytes: those of the file for text in the code page, where a character
    /// that lies across the end of a piece has half of its bytes in each; for TextFormat::Utf8
    /// well-formed UTF-8.
    template <typename View>
    bool Next(View& piece) {
        std::string_view bytes;
        const bool found = NextBytes(bytes);
        if (found) {
            Show(bytes, piece);
        }
        return found;
    }

    /// Has the bytes of TextFormat::Utf8 come in parts that end with one of `ends`, or where the
    /// file does. They are as long as it takes, so that no file need be in memory as a whole.
    void PartAfter(const AsciiSet& ends) { ends_ = ends; }

private:
    bool NextBytes(std::string_view& piece);
    std::string_view PeekPart();
    std::string_view PeekPiece();

    AsciiSet ends_;
    std::optional<char16_t> beginOfNext_; // half of a character
};

/// A text file on its way in, line by line, without the line ends. In TextFormat::Utf8 only CR LF
/// ends a line, and one at the end of the file makes a further, empty line; in the other formats CR
/// LF, LF and CR each end a line, and one at the end of the file makes no further line. An empty
/// file is one empty line.
class TextLines : public TextReader {
public:
    TextLines(InputFile file, TextFormat format, const CodePage& page)
        : TextReader(std::move(file), format, page) {}

    /// Shows the next line, as TextPieces shows a piece.
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

    bool ended_ = false; // the last line has been shown, which only UTF-8 tells
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/InputFile.h"

#include <bitset>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

class CodePage;

/// Characters in a piece of text: no replacement ever works on more at once.
inline constexpr std::size_t kPieceSize = 65536;

// What a file begins with to say how its bytes stand for characters.
inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
inline constexpr std::string_view kUtf16Mark = "\xFF\xFE"; // low byte first

/// How the bytes of a file stand for characters.
enum class TextFormat {
    Ansi,  ///< the code page
    Utf16, ///< low byte first, after a mark of two bytes or without one
    Utf8,  ///< after a mark of three bytes; without one, it is a code page
};

/// Some of the characters of ASCII.
using AsciiSet = std::bitset<128>;

/// A text file on its way in, piece by piece. TextFormat::Utf8 is one piece of any size; of the
/// other formats each piece but the last has kPieceSize characters. An empty file is one empty
/// piece. All failures are thrown as Failure.
class TextPieces {
public:
    TextPieces(InputFile file, TextFormat format, const CodePage& page);

    /// Shows the next piece in `piece`, which is valid until the next call. False after the last
    /// one.
    bool Next(std::u16string_view& piece);

    /// The same in wide text (base/Utf8.h), where the code page is UTF-8.
    bool Next(std::u32string_view& piece);

    /// The same in bytes: those of the file for text in the code page, where a character that lies
    /// across the end of a piece has half of its bytes in each; for TextFormat::Utf8 well-formed
    /// UTF-8.
    bool Next(std::string_view& piece);

    /// Has the bytes of TextFormat::Utf8 come in parts that end with one of `ends`, or where the
    /// file does. They are as long as it takes, so that no file need be in memory as a whole.
    void PartAfter(const AsciiSet& ends) { ends_ = ends; }

    /// Makes sure that the file was not changed while it was read.
    void Finish() { file_.CheckUnchanged(); }

    TextFormat Format() const { return format_; }

    /// The file that is read.
    InputFile& File() { return file_; }

private:
    bool NextOfStream(std::string_view& bytes);
    std::string_view PeekPart();
    std::string_view PeekPiece();
    std::string_view WithoutHalves(std::string_view bytes) const;
    template <typename Text>
    void InsertHalves(Text& text) const;

    InputFile file_;
    TextFormat format_;
    const CodePage& page_;
    bool begun_ = false;
    AsciiSet ends_;

    // The piece that is shown, in one of these.
    std::u16string text_;
    std::u32string wide_;
    std::string utf8_;

    // Halves of characters that lie across the beginning and the end of that piece.
    std::optional<char16_t> begin_;
    std::optional<char16_t> end_;
    std::optional<char16_t> beginOfNext_;
};

/// A text file on its way in, line by line, without the line ends. In TextFormat::Utf8 only CR LF
/// ends a line, and one at the end of the file makes a further, empty line; in the other formats CR
/// LF, LF and CR each end a line, and one at the end of the file makes no further line. An empty
/// file is one empty line. All failures are thrown as Failure.
class TextLines {
public:
    TextLines(InputFile file, TextFormat format, const CodePage& page);

    /// Shows the next line in `line`, which is valid until the next call. False after the last
    /// one.
    bool Next(std::u16string_view& line);

    /// The same in wide text (base/Utf8.h), where the code page is UTF-8.
    bool Next(std::u32string_view& line);

    /// The same in bytes: those of the file for text in the code page; for TextFormat::Utf8
    /// well-formed UTF-8.
    bool Next(std::string_view& line);

    /// Makes sure that the file was not changed while it was read.
    void Finish() { file_.CheckUnchanged(); }

    TextFormat Format() const { return format_; }

    /// The file that is read.
    InputFile& File() { return file_; }

private:
    bool NextOfFile(std::string_view& line);
    bool NextOfStream(std::string_view& line);
    bool SplitTextLines(std::string_view& line);

    InputFile file_;
    TextFormat format_;
    const CodePage& page_;
    bool begun_ = false;
    bool ended_ = false; // the last line has been shown, which only UTF-8 tells

    // The line that is shown, in one of these.
    std::u16string text_;
    std::u32string wide_;
    std::string utf8_;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/InputFile.h"

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

/// Splits text at every CR LF; a lone CR or LF stays inside its line. A text that ends in CR LF
/// has an empty last line, and an empty text is one empty line.
std::vector<std::u16string> SplitTextLines(std::u16string_view text);

/// A text file on its way in, piece by piece. TextFormat::Utf8 is one piece of any size; of the
/// other formats each piece but the last has kPieceSize characters. An empty file is one empty
/// piece. All failures are thrown as Failure.
class TextPieces {
public:
    TextPieces(InputFile file, TextFormat format, const CodePage& page);

    /// Shows the next piece in `piece`, which is valid until the next call. False after the last
    /// one.
    bool Next(std::u16string_view& piece);

    /// The same in the bytes of the file, for text in the code page only. Of a character that lies
    /// across the end of a piece, half of the bytes are in each.
    bool Next(std::string_view& piece);

    /// Makes sure that the file was not changed while it was read.
    void Finish() { file_.CheckUnchanged(); }

    TextFormat Format() const { return format_; }

    /// The file that is read.
    InputFile& File() { return file_; }

private:
    bool NextOfStream(std::string_view& bytes);
    std::string_view PeekPiece();
    void Decode(std::string_view bytes);

    InputFile file_;
    TextFormat format_;
    const CodePage& page_;
    bool begun_ = false;
    std::u16string text_; // the piece that is shown

    // Halves of characters that lie across the beginning and the end of that piece.
    std::optional<char16_t> begin_;
    std::optional<char16_t> end_;
    std::optional<char16_t> beginOfNext_;
};

/// A text file on its way in, line by line, without the line ends. TextFormat::Utf8 is divided
/// by SplitTextLines; in the other formats CR LF, LF and CR each end a line, and one at the end of
/// the file makes no further line. An empty file is one empty line. All failures are thrown as
/// Failure.
class TextLines {
public:
    TextLines(InputFile file, TextFormat format, const CodePage& page);

    /// Shows the next line in `line`, which is valid until the next call. False after the last
    /// one.
    bool Next(std::u16string_view& line);

    /// The same in the bytes of the file, for text in the code page only.
    bool Next(std::string_view& line);

    /// Makes sure that the file was not changed while it was read.
    void Finish() { file_.CheckUnchanged(); }

    TextFormat Format() const { return format_; }

    /// The file that is read.
    InputFile& File() { return file_; }

private:
    bool NextOfStream(std::string_view& line);
    bool NextOfUtf8(std::u16string_view& line);

    InputFile file_;
    TextFormat format_;
    const CodePage& page_;
    bool begun_ = false;
    std::u16string text_;               // the line that is shown
    std::vector<std::u16string> lines_; // all of them, when it is UTF-8
    std::size_t next_ = 0;              // of those
};

} // namespace vexmarrow

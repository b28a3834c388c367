// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/TextReaders.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

class AnsiCodePage;
class SystemCalls;

/// What the last detection found in the first bytes of a file. There is one object in the process,
/// which everything that reads or writes text uses, because what is written has the format of what
/// was read before it.
struct EncodingFlags {
    bool IsUtf8 = false;    ///< the file begins with the UTF-8 mark
    bool IsUnicode = false; ///< it begins with a UTF-16 or UTF-32 mark, so text is in UTF-16
};

/// Opens and reads all text files. If IsUnicode is set, text is in UTF-16 with the low byte first,
/// whatever the mark was; else it is in the ANSI code page. Failures are thrown as Failure. A
/// failed detection clears IsUtf8 and keeps IsUnicode. A successful one sets both, and they stay as
/// they are if reading fails afterwards.
class RFTSFSO {
public:
    using Use = InputFile::Use;

    RFTSFSO(SystemCalls& calls, EncodingFlags& flags, const AnsiCodePage& ansi)
        : calls_(calls), flags_(flags), ansi_(ansi) {}

    /// Looks for a mark and sets IsUtf8. Returns whether there is a UTF-16 or UTF-32 mark.
    bool DetectTextEncoding(std::u16string_view path);

    /// Detects the encoding and opens the file to be read line by line.
    TextLines OpenTextLines(std::u16string_view path, Use use = Use::Read);

    /// Detects the encoding and reads all lines at once.
    std::vector<std::u16string> ReadTextLines(std::u16string_view path);

    /// Detects the encoding and opens the file to be read piece by piece.
    TextPieces ReadTextChunks(std::u16string_view path, Use use = Use::Read);

    /// Opens the file to be read piece by piece, with the flags that an earlier detection has set.
    /// Even text after a UTF-8 mark comes in pieces of kPieceSize, in the code page.
    TextPieces ReadChunksByStream(std::u16string_view path, Use use = Use::Read);

    /// Opens the file to be read as bytes. The flags are neither used nor changed.
    InputFile OpenBytes(std::u16string_view path, Use use);

    /// All bytes of a file.
    std::string ReadBytes(std::u16string_view path) const {
        return std::string(InputFile(calls_, path).PeekAll());
    }

    /// The size of a regular file in bytes; -1 if it cannot be opened for reading. Only the low 32
    /// bits count, as a signed number, so files of 2 GiB and more can give zero or a negative
    /// number. If the result is above zero, the file stays open for the next reading.
    int FileSize2(std::u16string_view path, Use use = Use::Read);

    /// Closes the file that FileSize2 has left open, if any.
    void CloseOpenedFile() noexcept { opened_.reset(); }

    SystemCalls& Calls() const { return calls_; }
    const EncodingFlags& Flags() const { return flags_; }
    const AnsiCodePage& Ansi() const { return ansi_; }

private:
    bool Detect(InputFile& file);
    InputFile OpenDetected(std::u16string_view path, Use use);
    TextFormat DetectedFormat() const;

    SystemCalls& calls_;
    EncodingFlags& flags_;
    const AnsiCodePage& ansi_;
    std::optional<InputFile> opened_; // by FileSize2
};

} // namespace vexmarrow

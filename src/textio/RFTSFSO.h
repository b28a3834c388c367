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

/// What the last look at a file's first bytes has found. Process-wide: made once and handed to
/// everything that reads or writes text, because it ties a read to the writes that follow it.
struct EncodingFlags {
    bool IsUtf8 = false;    ///< the file began with the UTF-8 mark
    bool IsUnicode = false; ///< it began with a UTF-16 or UTF-32 mark: text streams are UTF-16
};

/// The one reader of text files. Every stream takes its character format from the flags: UTF-16
/// little-endian (whatever the mark was) when IsUnicode is set, else the ANSI code page. Failures
/// are thrown as Failure; the flags then tell how far the detection came: IsUtf8 is cleared when
/// it begins, IsUnicode is set once it has succeeded, even when reading fails after that.
class RFTSFSO {
public:
    using Use = InputFile::Use;

    RFTSFSO(SystemCalls& calls, EncodingFlags& flags, const AnsiCodePage& ansi)
        : calls_(calls), flags_(flags), ansi_(ansi) {}

    /// Looks for a mark. Sets IsUtf8; returns whether there is a UTF-16 or UTF-32 mark.
    bool DetectTextEncoding(std::u16string_view path);

    /// Detects the encoding and reads the file as lines, one after another.
    TextLines OpenTextLines(std::u16string_view path, Use use = Use::Read);

    /// The same, all lines at once.
    std::vector<std::u16string> ReadTextLines(std::u16string_view path);

    /// Detects the encoding and reads the file as pieces.
    TextPieces ReadTextChunks(std::u16string_view path, Use use = Use::Read);

    /// Reads the file as pieces of kPieceSize characters, the last one shorter, without a
    /// detection: the flags stand as some earlier one has left them.
    TextPieces ReadChunksByStream(std::u16string_view path, Use use = Use::Read);

    /// Opens the file for whoever reads its bytes, without a detection: the flags do not matter and
    /// stay as they are.
    InputFile OpenBytes(std::u16string_view path, Use use) { return Open(path, use); }

    /// All bytes of a file.
    std::string ReadBytes(std::u16string_view path) const {
        return std::string(InputFile(calls_, path).PeekAll());
    }

    /// The size of a regular file in bytes, by really opening it for reading: -1 when that fails.
    /// Only the low 32 bits of the size count, as a signed number, so files of 2 GiB and more can
    /// give zero or a negative number. A file with a size above zero stays open for the reading
    /// that comes next.
    int FileSize2(std::u16string_view path, Use use = Use::Read);

    /// Closes a file that FileSize2 has left open.
    void CloseOpenedFile() noexcept { opened_.reset(); }

    SystemCalls& Calls() const { return calls_; }
    const EncodingFlags& Flags() const { return flags_; }
    const AnsiCodePage& Ansi() const { return ansi_; }

private:
    InputFile Open(std::u16string_view path, Use use);
    bool Detect(InputFile& file);
    InputFile OpenDetected(std::u16string_view path, Use use);
    TextFormat DetectedFormat() const;

    SystemCalls& calls_;
    EncodingFlags& flags_;
    const AnsiCodePage& ansi_;
    std::optional<InputFile> opened_; // by FileSize2
};

} // namespace vexmarrow

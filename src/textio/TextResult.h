// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/FileWriter.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vexmarrow {

class RFTSFSO;
enum class TextFormat;

/// The text result of one input file. The pieces or lines are handed over one after another, as
/// if each were written to the file at once, and reach it together in Commit.
class TextResult {
public:
    /// Text is encoded as the flags and code page of `textio` stand at each write. `source` is the
    /// file that the result is made from, if it is made from one.
    TextResult(const RFTSFSO& textio, FileWriter& writer, InputFile* source = nullptr)
        : textio_(textio), writer_(writer), source_(source) {}

    /// Adds `text`, with nothing after it, to the file of that path. A WriteMode of 1 or less
    /// starts the file afresh; 2 or more goes on, after what the file holds when this is the
    /// first write. UTF-16 gets its mark when the file starts afresh or does not exist. Throws
    /// Failure.
    void WriteTextFile(std::u16string_view text, std::u16string_view path, std::int32_t WriteMode);

    /// The same with wide text (base/Utf8.h) for the code page UTF-8. The halves of a character may
    /// come with two writes.
    void WriteTextFile(std::u32string_view text, std::u16string_view path, std::int32_t WriteMode);

    /// The same with bytes: of the code page, which are written as they are, or of well-formed
    /// UTF-8, which goes into the code page.
    void WriteTextFile(std::string_view bytes, TextFormat format, std::u16string_view path,
                       std::int32_t WriteMode);

    /// Gives up what was handed over: the file stays as it was.
    void Drop() {
        file_.reset();
        heldBack_.clear();
    }

    /// Writes the file. Throws Failure. Does nothing when nothing was handed over.
    void Commit();

private:
    bool Start(std::u16string_view path, std::int32_t WriteMode);

    const RFTSFSO& textio_;
    FileWriter& writer_;
    InputFile* source_;
    std::string bytes_; // of one write, kept for the next
    /// The first half of a character whose second half may come with the next write.
    std::u32string heldBack_;
    std::unique_ptr<PendingFile> file_;
};

} // namespace vexmarrow

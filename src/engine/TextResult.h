// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Trap.h"
#include "textio/FileWriter.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vexmarrow {

class RFTSFSO;
enum class TextFormat;

/// A failed statement whose report is still due.
struct Refusal {
    int line = 0;
    std::u16string description;
};

/// The text result of one input file. The pieces or lines are handed over one after another, as
/// if each were written to the file at once, and reach it together in Commit. Text is encoded as
/// the flags and the code page stand at each write.
class TextResult {
public:
    /// `source` is the file that the result is made from, if it is made from one.
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

    // What follows throws nothing: after a failure the file stays as it was, and the result only
    // counts its pieces, because the report is due for every one of them.

    /// Runs the statement of that number, unless one has failed.
    template <typename Statement>
    void Try(int line, Statement&& statement) {
        if (refusal_) {
            return;
        }
        if (std::optional<std::u16string> failure = FailureOf(std::forward<Statement>(statement))) {
            refusal_ = Refusal{line, std::move(*failure)};
            file_.reset();
        }
    }

    /// Adds a piece or line, whose parts are of characters or of bytes in that format. Failures are
    /// those of statement `line`.
    template <typename Unit>
    void Write(std::initializer_list<std::basic_string_view<Unit>> parts, TextFormat format,
               std::u16string_view path, int line) {
        ++count_;
        for (const std::basic_string_view<Unit> part : parts) {
            // 1 starts the file; a file may have more lines than there are numbers to go on with.
            const std::int32_t writeMode = std::exchange(begun_, true) ? 2 : 1;
            Try(line, [&] {
                if constexpr (sizeof(Unit) == 1) {
                    WriteTextFile(part, format, path, writeMode);
                } else {
                    WriteTextFile(part, path, writeMode);
                }
            });
        }
    }

    /// The result is complete: Seal makes ready, Commit writes the file. Nothing when nothing was
    /// written.
    void Seal(int line);
    void Commit(int line);

    std::uint64_t Count() const { return count_; }
    const std::optional<Refusal>& Refused() const { return refusal_; }

private:
    bool Start(std::u16string_view path, std::int32_t WriteMode);

    const RFTSFSO& textio_;
    FileWriter& writer_;
    InputFile* source_;
    std::string bytes_; // of one write, kept for the next
    /// The first half of a character whose second half may come with the next write.
    std::u32string heldBack_;
    std::unique_ptr<PendingFile> file_;
    bool begun_ = false;
    std::uint64_t count_ = 0;
    std::optional<Refusal> refusal_;
};

} // namespace vexmarrow

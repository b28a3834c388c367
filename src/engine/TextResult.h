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

/// A failed statement that has not been reported yet.
struct FailedStatement {
    int line = 0;
    std::u16string description;
};

/// The result of one input file. It receives the pieces or lines one after another, as if each were
/// written at once; Commit writes them all to the file. Each write uses the encoding flags and the
/// code page of its moment.
class TextResult {
public:
    /// `source` is the file that the result is made from, or null.
    TextResult(const RFTSFSO& textio, FileWriter& writer, InputFile* source = nullptr)
        : textio_(textio), writer_(writer), source_(source) {}

    /// Adds `text`, without a line end, to the file with that path. A WriteMode of 1 or less
    /// replaces the contents; 2 or more appends, in the first write to what the file contains.
    /// UTF-16 gets its mark when the contents are replaced or the file does not exist. Throws
    /// Failure.
    void WriteTextFile(std::u16string_view text, std::u16string_view path, std::int32_t WriteMode);

    /// The same for wide text (base/Utf8.h) and the code page UTF-8. Two successive writes may have
    /// one half of a character each.
    void WriteTextFile(std::u32string_view text, std::u16string_view path, std::int32_t WriteMode);

    /// The same for bytes: bytes of the code page are written unchanged, well-formed UTF-8 is
    /// converted to the code page.
    void WriteTextFile(std::string_view bytes, TextFormat format, std::u16string_view path,
                       std::int32_t WriteMode);

    // The functions below do not throw. After a failure the file stays unchanged, and the result
    // only counts its pieces, because the failure is reported once for each of them.

    /// Runs statement number `line`, unless an earlier one has failed.
    template <typename Statement>
    void Try(int line, Statement&& statement) {
        if (failed_) {
            return;
        }
        if (std::optional<std::u16string> failure = FailureOf(std::forward<Statement>(statement))) {
            failed_ = FailedStatement{line, std::move(*failure)};
            file_.reset();
        }
    }

    /// Adds a piece or line in parts: characters, or bytes in that format. A failure belongs to
    /// statement `line`.
    template <typename Unit>
    void Write(std::initializer_list<std::basic_string_view<Unit>> parts, TextFormat format,
               std::u16string_view path, int line) {
        ++count_;
        for (const std::basic_string_view<Unit> part : parts) {
            // Not the number of the part: a file may have more lines than an int32 can count.
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

    /// Seal completes the result, then Commit writes it to the file. Without a piece or line, both
    /// do nothing.
    void Seal(int line);
    void Commit(int line);

    std::uint64_t Count() const { return count_; }
    const std::optional<FailedStatement>& Failed() const { return failed_; }

private:
    bool Start(std::u16string_view path, std::int32_t WriteMode);

    const RFTSFSO& textio_;
    FileWriter& writer_;
    InputFile* source_;
    std::string bytes_;       // reused by every write
    std::u32string heldBack_; // half a character, whose other half may come with the next write
    std::unique_ptr<PendingFile> file_;
    bool begun_ = false;
    std::uint64_t count_ = 0;
    std::optional<FailedStatement> failed_;
};

} // namespace vexmarrow

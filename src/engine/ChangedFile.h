// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/OutputPath.h"
#include "shell/Trap.h"
#include "textio/InputFile.h"
#include "textio/TextResult.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vexmarrow {

/// Numbers of the statements that the routines have in common, as their error reports name them.
struct StatementNumbers {
    int read = 1;
    int replace = 2;
    int outputPath = 3;
    int write = 4;
};

/// A failed statement whose report is still due.
struct Refusal {
    int line = 0;
    std::u16string description;
};

/// The result of one file, piece by piece or line by line. After a failure it only counts: the
/// report is due for every one of them.
class Output {
public:
    Output(const RFTSFSO& textio, FileWriter& writer, InputFile& input,
           const OutputLocation& location, const StatementNumbers& numbers)
        : result_(textio, writer, &input), numbers_(numbers) {
        Try(numbers_.outputPath, [&] { path_ = OutputPath(input.Path(), location); });
    }

    /// Adds characters, or bytes of the code page.
    template <typename Unit>
    void Write(std::basic_string_view<Unit> text) {
        // 1 starts the file, any higher number goes on; a file may have more lines than numbers.
        const std::int32_t writeMode = count_++ == 0 ? 1 : 2;
        Try(numbers_.write, [&] { result_.WriteTextFile(text, path_, writeMode); });
    }
    void Commit() {
        Try(numbers_.write, [&] { result_.Commit(); });
    }

    std::uint64_t Count() const { return count_; }
    const std::optional<Refusal>& Refused() const { return refusal_; }

private:
    template <typename Statement>
    void Try(int line, Statement&& statement) {
        if (refusal_) {
            return;
        }
        if (std::optional<std::u16string> failure = FailureOf(std::forward<Statement>(statement))) {
            refusal_ = Refusal{line, std::move(*failure)};
            result_.Drop();
        }
    }

    TextResult result_;
    StatementNumbers numbers_;
    std::u16string path_;
    std::uint64_t count_ = 0;
    std::optional<Refusal> refusal_;
};

/// What became of a file.
struct Outcome {
    std::optional<Refusal> broken;  ///< what ended the work before there was a result
    std::optional<Refusal> refused; ///< why the result could not be written
    std::uint64_t count = 0;        ///< pieces or lines
};

/// Reads a file to its end, changes each piece or line and writes the result. No box opens in here:
/// the result holds the lock of its file. `change` takes a text and returns what is to be written,
/// which is valid until its next call; `Unit` tells whether they are characters or bytes.
template <typename Unit, typename Reader, typename Change>
Outcome WriteChanged(Reader& reader, Output& output, const StatementNumbers& numbers,
                     Change&& change) {
    Outcome outcome;
    int line = numbers.read;
    const std::optional<std::u16string> failure = FailureOf([&] {
        for (std::basic_string_view<Unit> text; line = numbers.read, reader.Next(text);) {
            line = numbers.replace;
            output.Write(change(text));
        }
        if (!output.Refused()) { // then nothing is written in any case
            reader.Finish();
        }
        output.Commit();
    });
    if (failure) {
        outcome.broken = Refusal{line, *failure};
    }
    outcome.refused = output.Refused();
    outcome.count = output.Count();
    return outcome;
}

} // namespace vexmarrow

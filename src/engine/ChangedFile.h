// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/OutputPath.h"
#include "shell/Trap.h"
#include "textio/InputFile.h"
#include "textio/TextResult.h"
#include "textio/TextStreams.h"

#include <cstdint>
#include <initializer_list>
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
    /// `format` is that of bytes.
    Output(const RFTSFSO& textio, FileWriter& writer, InputFile& input, TextFormat format,
           const OutputLocation& location, const StatementNumbers& numbers)
        : result_(textio, writer, &input), format_(format), numbers_(numbers) {
        Try(numbers_.outputPath, [&] { path_ = OutputPath(input.Path(), location); });
    }

    /// Adds a piece or line, of characters or bytes.
    template <typename Unit>
    void Write(std::basic_string_view<Unit> text) {
        ++count_;
        Try(numbers_.write, [&] { WritePart(text); });
    }

    /// The same in parts.
    template <typename Unit>
    void Write(std::initializer_list<std::basic_string_view<Unit>> parts) {
        ++count_;
        for (const std::basic_string_view<Unit> part : parts) {
            Try(numbers_.write, [&] { WritePart(part); });
        }
    }
    void Commit() {
        Try(numbers_.write, [&] { result_.Commit(); });
    }

    std::uint64_t Count() const { return count_; }
    const std::optional<Refusal>& Refused() const { return refusal_; }

private:
    template <typename Unit>
    void WritePart(std::basic_string_view<Unit> part) {
        // 1 starts the file, any higher number goes on; a file may have more lines than numbers.
        const std::int32_t writeMode = std::exchange(begun_, true) ? 2 : 1;
        if constexpr (sizeof(Unit) == 1) {
            result_.WriteTextFile(part, format_, path_, writeMode);
        } else {
            result_.WriteTextFile(part, path_, writeMode);
        }
    }

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
    TextFormat format_;
    bool begun_ = false;
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
/// the result holds the lock of its file. `change` takes a text and writes what becomes of it into
/// the output; `Unit` tells whether they are characters or bytes.
template <typename Unit, typename Reader, typename Change>
Outcome WriteChanged(Reader& reader, Output& output, const StatementNumbers& numbers,
                     Change&& change) {
    Outcome outcome;
    int line = numbers.read;
    const std::optional<std::u16string> failure = FailureOf([&] {
        for (std::basic_string_view<Unit> text; line = numbers.read, reader.Next(text);) {
            line = numbers.replace;
            change(text, output);
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

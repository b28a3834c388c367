// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/OutputPath.h"
#include "engine/TextResult.h"
#include "textio/InputFile.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace vexmarrow {

/// The statement numbers that error reports show. The routines have these statements in common.
struct StatementNumbers {
    int read = 1;
    int replace = 2;
    int outputPath = 3;
    int write = 4;
};

/// The result of processing one file.
struct Outcome {
    std::optional<FailedStatement> workFailure;  ///< of a file without a result
    std::optional<FailedStatement> writeFailure; ///< of a result that could not be written
    std::uint64_t count = 0;                     ///< of pieces or lines
};

/// Calls `work(path, line)`, which must read the whole file, write the result for `path`, and keep
/// `line` at the number of its current statement. Then checks the file and commits the result.
/// Shows no box, because meanwhile the file is locked.
template <typename Work>
Outcome WriteResult(InputFile& file, TextResult& result, const OutputLocation& location,
                    const StatementNumbers& numbers, Work&& work) {
    std::u16string path;
    result.Try(numbers.outputPath, [&] { path = OutputPath(file.Path(), location); });
    Outcome outcome;
    int line = numbers.read;
    const std::optional<std::u16string> failure = FailureOf([&] {
        work(path, line);
        result.Seal(numbers.write);
        file.CheckUnchanged(); // even after a failed write, which a change may have caused
        result.Commit(numbers.write);
    });
    if (failure) {
        outcome.workFailure = FailedStatement{line, *failure};
    }
    outcome.writeFailure = result.Failed();
    outcome.count = result.Count();
    return outcome;
}

/// The same for a file that is changed in pieces or lines. For each of them, calls `change(text,
/// write)`, which must call `write` with the parts of the result. `Unit` is a character or a byte.
template <typename Unit, typename Reader, typename Change>
Outcome WriteChanged(Reader& reader, TextResult& result, const OutputLocation& location,
                     const StatementNumbers& numbers, Change&& change) {
    using View = std::basic_string_view<Unit>;
    const auto work = [&](const std::u16string& path, int& line) {
        const auto write = [&](std::initializer_list<View> parts) {
            result.Write(parts, reader.Format(), path, numbers.write);
        };
        for (View text; line = numbers.read, reader.Next(text);) {
            line = numbers.replace;
            change(text, write);
        }
    };
    return WriteResult(reader.File(), result, location, numbers, work);
}

} // namespace vexmarrow

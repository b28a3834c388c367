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

/// Numbers of the statements that the routines have in common, as their error reports name them.
struct StatementNumbers {
    int read = 1;
    int replace = 2;
    int outputPath = 3;
    int write = 4;
};

/// What became of a file.
struct Outcome {
    std::optional<Refusal> broken;  ///< what ended the work before there was a result
    std::optional<Refusal> refused; ///< why the result could not be written
    std::uint64_t count = 0;        ///< pieces or lines
};

/// Has `work` read a file to its end and write the result to where `location` says. No box opens in
/// here: the result holds the lock of its file. `work` takes the result's path, and a number that
/// it keeps at that of the statement which it is at.
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
        file.CheckUnchanged(); // also when it is refused, which may come of that
        result.Commit(numbers.write);
    });
    if (failure) {
        outcome.broken = Refusal{line, *failure};
    }
    outcome.refused = result.Refused();
    outcome.count = result.Count();
    return outcome;
}

/// The same for a file that is changed piece by piece or line by line. `change` takes a text and a
/// function, which it calls with the parts of what becomes of the text; `Unit` tells whether they
/// are characters or bytes.
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

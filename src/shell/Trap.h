// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Failure.h"

#include <exception>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vexmarrow {

class Prompts;

/// Description of a failure to get memory.
inline constexpr std::u16string_view kOutOfMemory = u"Out of memory.";

/// The text by which a user tells support what failed and where. `location` ends in a blank.
std::u16string ErrorReportText(std::u16string_view description, std::u16string_view location,
                               int line);

/// Description of a failure that is none of the kinds that the program foresees.
std::u16string UnforeseenDescription(const std::exception& error);

/// Runs a statement; the description of its failure, or nothing when it succeeded. ProgramEnded
/// passes through.
template <typename Statement>
std::optional<std::u16string> FailureOf(Statement&& statement) {
    try {
        std::forward<Statement>(statement)();
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure.Description();
    } catch (const std::bad_alloc&) {
        return std::u16string(kOutOfMemory);
    } catch (const std::exception& error) {
        return UnforeseenDescription(error);
    }
}

/// Report and carry on: the way in which every routine that answers to the user meets failures.
///
/// A routine makes one trap with its own location and runs each statement that can fail through
/// Do, with the number of that statement within the routine. A failure is shown as the standard
/// error report and Do returns, so that the routine goes on with its next statement; what the
/// statement was to compute keeps its value. Statements that were begun stay begun: nothing is
/// retried or rolled back. ProgramEnded passes through.
class Trap {
public:
    /// `routine` is module and routine, "Form1.PushButton1_Click" for instance.
    Trap(Prompts& prompts, std::u16string_view routine,
         std::u16string_view origin = u"in Zentavor2021/08/31.");

    /// Runs a statement; returns whether it succeeded.
    template <typename Statement>
    bool Do(int line, Statement&& statement) {
        const std::optional<std::u16string> failure = FailureOf(std::forward<Statement>(statement));
        if (failure) {
            Report(line, *failure);
        }
        return !failure;
    }

    /// Shows the error report for a failure of statement `line`.
    void Report(int line, std::u16string_view description);

private:
    Prompts& prompts_;
    std::u16string location_;
};

} // namespace vexmarrow

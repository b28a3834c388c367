// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Failure.h"
#include "base/Utf8.h"

#include <exception>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vexmarrow {

class Prompts;

/// Runs a statement. Returns the description of its failure, or nothing if it succeeded. Does not
/// catch ProgramEnded.
template <typename Statement>
std::optional<std::u16string> FailureOf(Statement&& statement) {
    try {
        std::forward<Statement>(statement)();
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure.Description();
    } catch (const std::bad_alloc&) {
        return u"Out of memory.";
    } catch (const std::exception& error) {
        return TextFromUtf8(error.what());
    }
}

/// Reports failures and carries on. Every routine that works for the user handles failures in this
/// way.
///
/// The routine makes one trap with its own location and passes each statement that can fail to Do,
/// with the number of the statement within the routine. If the statement fails, Do shows the
/// standard error report and returns, and the routine goes on with its next statement. A variable
/// that the statement should have set keeps its old value. Nothing is retried or rolled back. Do
/// does not catch ProgramEnded.
class Trap {
public:
    /// `routine` names module and routine, for example "Form1.PushButton1_Click". `origin` stands
    /// before it in error reports.
    Trap(Prompts& prompts, std::u16string_view routine,
         std::u16string_view origin = u"in Zentavor2021/08/31.");

    /// Runs a statement. Returns whether it succeeded.
    template <typename Statement>
    bool Do(int line, Statement&& statement) {
        const std::optional<std::u16string> failure = FailureOf(std::forward<Statement>(statement));
        if (failure) {
            Report(line, *failure);
        }
        return !failure;
    }

    /// Shows the error report for a failure of statement `line`. Support staff learn from it what
    /// has failed and where.
    void Report(int line, std::u16string_view description);

private:
    Prompts& prompts_;
    std::u16string location_; // with a blank at its end
};

} // namespace vexmarrow

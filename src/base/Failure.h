// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace vexmarrow {

/// A failure that may happen in normal use: a file cannot be opened, a value cannot be converted.
/// Its description is one plain sentence, which becomes the first line of the error report.
class Failure : public std::exception {
public:
    explicit Failure(std::u16string description, int systemError = 0);

    const std::u16string& Description() const noexcept { return description_; }

    /// The errno value that caused the failure; 0 when no system call caused it.
    int SystemError() const noexcept { return systemError_; }

    /// The description in UTF-8, for the output of tests.
    const char* what() const noexcept override { return utf8_.c_str(); }

private:
    std::u16string description_;
    std::string utf8_;
    int systemError_;
};

/// The system's description of an errno value.
std::u16string ReasonOf(int error);

/// The failure of a system call on a file or folder. Its description is DOING "PATH": REASON, where
/// the reason is the system's description of `error` (an errno value).
[[nodiscard]] Failure FileFailure(std::u16string_view doing, std::u16string_view path, int error);

/// The same with the program's own reason, a sentence without its full stop.
[[nodiscard]] Failure FileFailure(std::u16string_view doing, std::u16string_view path,
                                  std::u16string_view reason);

} // namespace vexmarrow

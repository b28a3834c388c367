// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace vexmarrow {

/// An expected kind of failure (a file that cannot be opened, a value that cannot be converted),
/// described in one plain sentence that becomes the first line of the error report.
class Failure : public std::exception {
public:
    explicit Failure(std::u16string description, int systemError = 0);

    const std::u16string& Description() const noexcept { return description_; }

    /// The errno value behind the failure; 0 when it has another reason.
    int SystemError() const noexcept { return systemError_; }

    /// The description in UTF-8, for logs of tests.
    const char* what() const noexcept override { return utf8_.c_str(); }

private:
    std::u16string description_;
    std::string utf8_;
    int systemError_;
};

/// What the system says of an errno value.
std::u16string ReasonOf(int error);

/// The failure of a system call on a file or folder: `doing` "path": the system's reason for
/// `error` (an errno value).
[[nodiscard]] Failure FileFailure(std::u16string_view doing, std::u16string_view path, int error);

/// The same with a reason of our own.
[[nodiscard]] Failure FileFailure(std::u16string_view doing, std::u16string_view path,
                                  std::u16string_view reason);

} // namespace vexmarrow

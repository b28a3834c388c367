// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string_view>

namespace vexmarrow {

/// How far a long operation is: at item `done`, counted from 1, of `total`.
struct Progress {
    std::u16string_view item; ///< what is counted, for example "File"
    std::size_t done = 0;
    std::size_t total = 0; ///< 0 if it is not known
};

/// Thrown by a yield or by a box after the user has closed the main window. It ends all work in
/// progress: no further file is touched and no further box is shown. It is not a std::exception, so
/// that no trap catches it; only the outermost handler does.
struct ProgramEnded {};

/// Keeps the window responsive during long work, which runs on the program's only thread.
class EventLoop {
public:
    virtual ~EventLoop() = default;

    /// Handles all waiting events. They may change everything that the caller has not copied: rows,
    /// texts, options. Throws ProgramEnded.
    virtual void Yield(const Progress& progress) = 0;
};

} // namespace vexmarrow

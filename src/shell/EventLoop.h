// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string_view>

namespace vexmarrow {

/// How far a long operation is: item `done` (1-based) of `total`; a total of 0 is not known.
struct Progress {
    std::u16string_view item; ///< what is counted, "File" for instance
    std::size_t done = 0;
    std::size_t total = 0;
};

/// Thrown out of a yield (or a box) when the user has closed the main window meanwhile: unwinds
/// whatever is under way without another file touched or box shown. Deliberately no
/// std::exception, so that no trap stops it; only the outermost handler catches it.
struct ProgramEnded {};

/// The one thread's way of letting the window live during long work.
class EventLoop {
public:
    virtual ~EventLoop() = default;

    /// Handles all events that wait, which may change anything the caller has not copied: rows,
    /// texts, options. Throws ProgramEnded.
    virtual void Yield(const Progress& progress) = 0;
};

} // namespace vexmarrow

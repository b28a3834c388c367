// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"

#include <string>

namespace vexmarrow {

class FileList;
class SystemCalls;

/// The sample files, which lie in a folder beside the program. A setting records their paths once,
/// so that files which are put into the folder later do not count as samples.
class SampleFiles {
public:
    /// `programFolder` holds the program file. It has no separator at its end.
    SampleFiles(SystemCalls& calls, FileList& list, const Desktop& desktop,
                const std::u16string& programFolder);

    /// Records the files of the samples folder, unless the record already names some. Throws
    /// Failure if the folder exists and cannot be listed.
    void RecordOnce();

    /// Adds the recorded files that exist and are not in the list yet, then offers to open their
    /// folder. Throws Failure.
    void Load();

private:
    SystemCalls& calls_;
    FileList& list_;
    Desktop desktop_;
    std::u16string folder_; // with a separator at its end
};

} // namespace vexmarrow

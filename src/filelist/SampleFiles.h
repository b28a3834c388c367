// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"

#include <string>

namespace vexmarrow {

class FileList;
class SystemCalls;

/// The sample files beside the program. Which files they are is recorded once, in the setting
/// "Snapshot"; what comes into their folder later is none of them.
class SampleFiles {
public:
    /// `programFolder` is the folder of the program file, without a separator at its end.
    SampleFiles(SystemCalls& calls, FileList& list, const Desktop& desktop,
                const std::u16string& programFolder);

    /// Records the files of the samples folder, unless there is a record that names some. Throws
    /// Failure when the folder is there and cannot be listed.
    void RecordOnce();

    /// Adds the recorded files that still exist and are not in the list yet, then offers to open
    /// their folder. Throws Failure.
    void Load();

private:
    SystemCalls& calls_;
    FileList& list_;
    Desktop desktop_;
    std::u16string folder_; // with a separator at its end
};

} // namespace vexmarrow

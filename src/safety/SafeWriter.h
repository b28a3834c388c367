// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogWriter.h"
#include "safety/OpenRecords.h"
#include "textio/FileWriter.h"

#include <string>
#include <vector>

namespace vexmarrow {

/// Writes users' files. Whatever happens to the program, every file has all of its old bytes or all
/// of its new bytes, or Recovery offers its old bytes at the next start. RunUndo can undo the run.
/// Existing files are overwritten in place, so they keep owner, mode, links and attributes.
class SafeWriter final : public FileWriter {
public:
    /// The log of a run goes into the first folder that accepts it.
    SafeWriter(SystemCalls& calls, const std::vector<std::string>& logFolders,
               UndoSupport undo = UndoSupport::Offered)
        : calls_(calls), log_(calls, logFolders, undo), openRecords_(calls, logFolders) {}

    std::unique_ptr<PendingFile> Begin(std::u16string_view path, InputFile* source) override;
    void Settle() noexcept override;

private:
    void RefuseUnfinished(std::u16string_view path, int descriptor, const FileStatus& status);

    SystemCalls& calls_;
    LogWriter log_;
    OpenRecords openRecords_;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "journal/Journal.h"
#include "textio/FileWriter.h"
#include "textio/SystemCalls.h"

#include <string>
#include <vector>

namespace vexmarrow {

/// Writes users' files so that each holds all of its old bytes or all of its new ones whatever
/// happens to the program, or is completed by Recovery at the next start. Existing files are
/// written in place behind a journal, so that their owner, mode, links and attributes stay; new
/// ones get their name when they are complete.
class JournaledWriter final : public FileWriter {
public:
    /// Journals go into the first of the folders that takes them.
    JournaledWriter(SystemCalls& calls, const std::vector<std::string>& journalFolders)
        : calls_(calls), folders_(journalFolders), journal_(calls, journalFolders) {}

    std::unique_ptr<PendingFile> Begin(std::u16string_view path, WriteStart start,
                                       InputFile* source) override;
    void Settle() noexcept override;

private:
    void RefuseTarget(std::u16string_view path, int descriptor, const FileStatus& status);
    void RefuseWaiting(std::u16string_view path, const FileStatus& file) const;

    SystemCalls& calls_;
    std::vector<std::string> folders_;
    Journal journal_;
    bool looked_ = false; // for files that wait, since the last Settle

    /// Files that wait for recovery: what they hold is a mixture.
    std::vector<FileStatus> waiting_;
};

} // namespace vexmarrow

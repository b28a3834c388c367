// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/OpenRecords.h"
#include "safety/RunLog.h"
#include "textio/FileWriter.h"

#include <string>
#include <vector>

namespace vexmarrow {

/// Writes users' files so that each holds all of its old bytes or all of its new ones whatever
/// happens to the program, or gets its old ones back by Recovery at the next start; and so that
/// all of it can be taken back (TakingBack). Existing files are written in place behind a log of
/// old texts, so that their owner, mode, links and attributes stay; new ones get their name when
/// they are complete.
class SafeWriter final : public FileWriter {
public:
    /// Logs go into the first of the folders that takes them.
    SafeWriter(SystemCalls& calls, const std::vector<std::string>& logFolders,
               WayBack wayBack = WayBack::Kept)
        : calls_(calls), log_(calls, logFolders, wayBack), openRecords_(calls, logFolders) {}

    std::unique_ptr<PendingFile> Begin(std::u16string_view path, InputFile* source) override;
    void Settle() noexcept override;

private:
    void RefuseWaiting(std::u16string_view path, int descriptor, const FileStatus& status);

    SystemCalls& calls_;
    RunLog log_;
    OpenRecords openRecords_;
    bool looked_ = false; // for open records, since the last Settle
};

} // namespace vexmarrow

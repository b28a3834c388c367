// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "journal/Journal.h"
#include "textio/FileWriter.h"
#include "textio/SystemCalls.h"

#include <string>
#include <vector>

namespace vexmarrow {

/// What the failures of writing say first.
inline constexpr std::u16string_view kCouldNotWrite = u"Could not write the file";

/// A full path for one that may start at the working folder.
std::string FullPath(const std::string& path);

/// The time, in nanoseconds since 1970.
std::int64_t Now();

/// A result for an existing file, which is open. It is locked as well, unless it is its own source:
/// reading goes on under that one's lock until the result is complete.
class Replacement final : public PendingFile {
public:
    /// `waiting` gets the file when it has to wait for recovery.
    Replacement(SystemCalls& calls, Journal& journal, std::vector<FileStatus>& waiting,
                std::u16string_view path, Descriptor target, const FileStatus& status,
                WriteStart start, InputFile* itself);

    void Append(std::string_view bytes) override { journal_.Append(bytes); }
    void Commit() override;

private:
    void MakeSureOfTarget();
    int CloseTarget();

    SystemCalls& calls_;
    Journal& journal_;
    std::vector<FileStatus>& waiting_;
    std::u16string path_;
    Descriptor target_; // not open when the source itself is written through
    InPlaceJob job_;
    InputFile* itself_; // the source, when it is the same file
};

} // namespace vexmarrow

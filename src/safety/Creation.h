// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/RunLog.h"
#include "textio/Checksum.h"
#include "textio/Descriptor.h"
#include "textio/FileWriter.h"

#include <optional>
#include <string>
#include <string_view>

namespace vexmarrow {

/// A result for a file that does not exist yet. It is written into a file of the same folder that
/// has no name until it is complete. Where a file system has no such files, it has a passing name
/// that nobody can guess, and which the log knows, so that recovery removes what is left.
class Creation final : public PendingFile {
public:
    /// The file gets no more rights for others than `model` has, if there is one. Throws Failure
    /// when no file can be made there.
    Creation(SystemCalls& calls, RunLog& log, std::u16string_view path, const FileStatus* model);
    ~Creation() override;
    Creation(const Creation&) = delete;
    Creation& operator=(const Creation&) = delete;

    void Append(std::string_view bytes) override;
    void Seal() override;
    void Commit() override;

private:
    Creation(SystemCalls& calls, RunLog& log, std::u16string_view path);
    void MakeWithPassingName(mode_t mode);
    void LimitRights(const FileStatus& model);
    void Write();
    [[noreturn]] void Fail(int error) const;

    SystemCalls& calls_;
    RunLog& log_;
    std::u16string path_;
    std::string nativePath_;
    Descriptor file_;
    std::optional<PlacedRecord> open_; // until the work on the file is over
    std::string buffer_;
    WrittenText written_;
    Checksum checksum_;
};

/// Whether a path ends in such a passing name.
bool IsPassingName(std::string_view path);

} // namespace vexmarrow

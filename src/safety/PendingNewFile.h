// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogWriter.h"
#include "textio/Checksum.h"
#include "textio/Descriptor.h"
#include "textio/FileWriter.h"

#include <optional>
#include <string>
#include <string_view>

namespace vexmarrow {

/// A result for a file that does not exist yet. It is written to a file without a name, or with a
/// random one where a file system needs it, and gets its name when it is complete. The log has the
/// random name, so that recovery can remove the file.
class PendingNewFile final : public PendingFile {
public:
    /// Other users get no more rights than they have to `model`, unless it is null. Throws Failure.
    PendingNewFile(SystemCalls& calls, LogWriter& log, std::u16string_view path,
                   const FileStatus* model);
    ~PendingNewFile() override;
    PendingNewFile(const PendingNewFile&) = delete;
    PendingNewFile& operator=(const PendingNewFile&) = delete;

    void Append(std::string_view bytes) override;
    void Seal() override;
    void Commit() override;

private:
    PendingNewFile(SystemCalls& calls, LogWriter& log, std::u16string_view path);
    void MakeWithTemporaryName(mode_t mode);
    void OpenRecord(const std::string& temporaryName, const std::optional<RecordTail>& tail);
    void LimitRights(const FileStatus& model);
    void Write();
    [[noreturn]] void Fail(int error) const;

    SystemCalls& calls_;
    LogWriter& log_;
    std::u16string path_;
    std::string nativePath_;
    Descriptor file_;
    std::optional<LogRecord> open_; // the open record, if there is one
    std::string buffer_;
    RecordTail written_;
    Checksum checksum_;
};

/// Whether a path ends with a temporary name of a PendingNewFile.
bool IsTemporaryName(std::string_view path);

} // namespace vexmarrow

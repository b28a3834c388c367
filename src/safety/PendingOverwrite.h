// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/LogWriter.h"
#include "safety/OpenRecords.h"
#include "textio/ByteSource.h"
#include "textio/Checksum.h"
#include "textio/Descriptor.h"
#include "textio/FileWriter.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vexmarrow {

/// The beginning of messages about failed writes, and the reason for a file with an open record.
inline constexpr std::u16string_view kCouldNotWrite = u"Could not write the file";
inline constexpr std::u16string_view kPartlyWritten =
    u"It is only partly written. Its old text is kept, and the program offers to put it back at "
    u"its next start";

/// A result for an existing file, which is open and locked.
///
/// While the result equals the file, nothing is written. At the first difference the old bytes are
/// copied to the log. A small result is written in Commit, a large one as it comes, and the rest of
/// its source is read from the log. If anything fails before Commit ends, the old bytes return.
class PendingOverwrite final : public PendingFile {
public:
    /// Writes to `target`, or to the file of `source` if `target` is not open. `isItself` says that
    /// the result is made from the file that it overwrites.
    PendingOverwrite(SystemCalls& calls, LogWriter& log, OpenRecords& others,
                     std::u16string_view path, Descriptor target, const FileStatus& status,
                     InputFile* source, bool isItself)
        : calls_(calls),
          log_(log),
          others_(others),
          path_(path),
          target_(std::move(target)),
          status_(status),
          source_(source),
          isItself_(isItself) {}
    ~PendingOverwrite() override { PutOldTextBack(); }
    PendingOverwrite(const PendingOverwrite&) = delete;
    PendingOverwrite& operator=(const PendingOverwrite&) = delete;

    void Append(std::string_view bytes) override;
    void Seal() override;
    void Commit() override;

private:
    enum class Part { Middle, Last };

    int Number() const;
    void ChooseOldSource(Part part);
    std::size_t LengthOfUnchanged(std::string_view bytes);
    bool SkipUnchanged(Part part);
    void OpenRecord(Part part);
    void Write();
    void CheckTargetUnchanged();
    bool HoldsOldText() noexcept;
    bool PutOldTextBack() noexcept;
    [[noreturn]] void FailToRead(int error) const;
    [[noreturn]] void Fail(int error);

    SystemCalls& calls_;
    LogWriter& log_;
    OpenRecords& others_;
    std::u16string path_;
    Descriptor target_;
    FileStatus status_; // of the file before the write
    InputFile* source_;
    bool isItself_;

    std::string result_;     // the part of the result that the file does not have yet
    std::uint64_t done_ = 0; // the size of the part before, in bytes
    Checksum checksum_;      // of the part before

    std::optional<LogRecord> open_; // the open record, if there is one
    bool touched_ = false;          // the file may have changed
    MemoryBytes inMemory_;
    std::unique_ptr<FileBytes> inFile_;
    ByteSource* old_ = nullptr; // one of both above, with the old text
};

} // namespace vexmarrow

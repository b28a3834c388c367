// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "safety/OpenRecords.h"
#include "safety/RunLog.h"
#include "textio/ByteSource.h"
#include "textio/Checksum.h"
#include "textio/Descriptor.h"
#include "textio/FileWriter.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vexmarrow {

/// What the failures of writing say first, and why a file that waits is not used.
inline constexpr std::u16string_view kCouldNotWrite = u"Could not write the file";
inline constexpr std::u16string_view kWrittenInPart =
    u"It is written in part; its old text is kept, and the next start of the program offers to put "
    u"it back";

/// A result for an existing file, which is open and locked.
///
/// As long as the result is what the file holds, nothing is written. From the first byte that
/// differs on, the old bytes go into the log, then the result into the file: of a small one in
/// Commit; a large one streams, and its source is read on from the log. Whatever ends that before
/// Commit is over puts the old bytes back.
class Replacement final : public PendingFile {
public:
    /// The file is `target`, or `source` itself where that is not open. `isItself` tells whether
    /// both are the same file.
    Replacement(SystemCalls& calls, RunLog& log, OpenRecords& others, std::u16string_view path,
                Descriptor target, const FileStatus& status, InputFile* source, bool isItself)
        : calls_(calls),
          log_(log),
          others_(others),
          path_(path),
          target_(std::move(target)),
          status_(status),
          source_(source),
          isItself_(isItself) {}
    ~Replacement() override { PutOldTextBack(); }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    void Append(std::string_view bytes) override;
    void Seal() override;
    void Commit() override;

private:
    enum class Part { Middle, Last };

    int Number() const;
    void ChooseOld(Part part);
    std::size_t LengthOfSame(std::string_view bytes);
    bool SkipSame(Part part);
    void OpenRecord(Part part);
    void Write();
    void LookAgain();
    bool HoldsOldText() noexcept;
    bool PutOldTextBack() noexcept;
    [[noreturn]] void FailToRead(int error) const;
    [[noreturn]] void Fail(int error);

    SystemCalls& calls_;
    RunLog& log_;
    OpenRecords& others_;
    std::u16string path_;
    Descriptor target_;
    FileStatus status_; // of the file as it was
    InputFile* source_;
    bool isItself_;

    std::string result_;     // what has come of it and is not in the file
    std::uint64_t done_ = 0; // bytes before that
    Checksum checksum_;      // of these

    std::optional<PlacedRecord> open_; // until the work on the file is over
    bool touched_ = false;             // the file may hold anything
    MemoryBytes inMemory_;
    std::unique_ptr<FileBytes> inFile_;
    ByteSource* old_ = nullptr; // one of those two: the file as it was, later what the log has
};

} // namespace vexmarrow

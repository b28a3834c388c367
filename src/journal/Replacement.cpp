// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/Replacement.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "textio/InputFile.h"

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>

namespace vexmarrow {

std::string FullPath(const std::string& path) {
    if (path.starts_with('/')) {
        return path;
    }
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error);
    return error ? path : (folder / path).native();
}

std::int64_t Now() {
    using namespace std::chrono;
    return duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
}

Replacement::Replacement(SystemCalls& calls, Journal& journal, std::vector<FileStatus>& waiting,
                         std::u16string_view path, Descriptor target, const FileStatus& status,
                         WriteStart start, InputFile* itself)
    : calls_(calls),
      journal_(journal),
      waiting_(waiting),
      path_(path),
      target_(std::move(target)),
      itself_(itself) {
    job_.descriptor = target_.IsOpen() ? target_.Number() : itself->Number();
    job_.old = status;
    job_.base = start == WriteStart::Append ? status.size : 0;
    JournalRecord record;
    record.path = FullPath(NativeName(path));
    record.target = status;
    record.begun = Now();
    record.base = job_.base;
    journal_.Begin(std::move(record));
}

/// Locks the file if it is not locked yet, and makes sure that it is what it was at the beginning.
void Replacement::MakeSureOfTarget() {
    if (!target_.IsOpen()) {
        return; // locked since before it was read, and its reader has just looked
    }
    if (itself_ != nullptr) {
        itself_->GiveUpLock();
        if (const int error = LockForWriting(calls_, target_.Number())) {
            throw LockFailure(kCouldNotWrite, path_, error);
        }
    }
    FileStatus now;
    if (calls_.StatusOfTarget(NativeName(path_), now) != 0 || !now.SameFileAs(job_.old) ||
        !now.SameContentsAs(job_.old)) {
        throw FileFailure(kCouldNotWrite, path_,
                          u"Another program has changed, removed or replaced it meanwhile");
    }
}

int Replacement::CloseTarget() {
    return target_.IsOpen() ? target_.Close() : itself_->Close();
}

void Replacement::Commit() {
    waiting_.reserve(waiting_.size() + 1); // nothing may fail for want of memory further down
    MakeSureOfTarget();
    journal_.Seal();
    job_.size = journal_.PayloadSize();
    InPlaceResult result = PutInPlace(calls_, job_, journal_.Payload());
    // A file system on a network tells of a full disk only now. A signal has closed it all the
    // same.
    if (CloseTarget() != 0 && errno != EINTR && result.state == InPlaceState::Complete) {
        result = {InPlaceState::Mixed, errno};
    }
    if (result.state != InPlaceState::Mixed) {
        journal_.Done();
    } else {
        journal_.Retire();
        waiting_.push_back(job_.old);
    }
    if (result.state == InPlaceState::Untouched) {
        throw FileFailure(kCouldNotWrite, path_, result.error);
    }
    if (result.state == InPlaceState::Mixed) {
        const std::string reason = std::generic_category().message(result.error);
        throw FileFailure(kCouldNotWrite, path_,
                          Concat(u"It is written in part (", TextFromUtf8(reason),
                                 u"), and will be completed at the next start of the program"));
    }
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/JournaledWriter.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "journal/Creation.h"
#include "journal/JournalFolders.h"
#include "journal/JournalRecord.h"
#include "journal/PendingRecords.h"
#include "journal/PutInPlace.h"
#include "journal/Replacement.h"
#include "journal/Whole.h"
#include "textio/InputFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <unistd.h>

namespace vexmarrow {
namespace {

/// Whether a file is a journal, of whatever process, or a record that was kept. They are the
/// user's own and open to nobody else.
bool HoldsRecord(SystemCalls& calls, int descriptor, const FileStatus& status) {
    constexpr mode_t kOthersRights = 0077;
    if ((status.mode & kOthersRights) != 0 || status.owner != ::geteuid()) {
        return false;
    }
    std::array<char, kRecordMark.size()> first{};
    std::size_t got = 0;
    return ReadWhole(calls, descriptor, first.data(), first.size(), 0, got) == 0 &&
           std::string_view(first.data(), got) == kRecordMark;
}

/// Refuses what must not even be opened: a pipe tells its other end of that, a device may act on
/// it.
void RefuseToOpen(SystemCalls& calls, std::u16string_view path, const std::string& nativePath) {
    FileStatus status;
    if (calls.StatusOfTarget(nativePath, status) == 0 && !status.IsRegular()) {
        throw FileFailure(kCouldNotWrite, path,
                          status.IsFolder() ? u"It is a folder" : u"It is not a regular file");
    }
}

} // namespace

std::unique_ptr<PendingFile> JournaledWriter::Begin(std::u16string_view path, WriteStart start,
                                                    InputFile* source) {
    if (!looked_) { // a program that was killed meanwhile leaves some as well
        waiting_ = FilesThatWait(calls_, folders_, NameOfMachine());
        looked_ = true;
    }
    if (source != nullptr) {
        RefuseWaiting(source->Path(), source->Status());
    }
    const bool samePath = source != nullptr && source->Path() == path;
    if (samePath && source->IsWritable()) { // it need not be opened again
        RefuseTarget(path, source->Number(), source->Status());
        return std::make_unique<Replacement>(calls_, journal_, waiting_, path, Descriptor(calls_),
                                             source->Status(), start, source);
    }
    const std::string nativePath = NativeName(path);
    if (!samePath) {
        RefuseToOpen(calls_, path, nativePath);
    }
    const OpenedInPlace opened = OpenInPlace(calls_, nativePath);
    if (opened.error == ENOENT) {
        return std::make_unique<Creation>(calls_, journal_, path);
    }
    if (opened.error != 0) {
        throw OpenFailure(kCouldNotWrite, path, opened);
    }
    Descriptor target(calls_, opened.descriptor);
    RefuseTarget(path, target.Number(), opened.status);
    RefuseWaiting(path, opened.status);
    const bool isItsOwnSource = source != nullptr && opened.status.SameFileAs(source->Status());
    if (samePath && !isItsOwnSource) {
        throw FileFailure(kCouldNotWrite, path,
                          u"Another program has put another file in its place");
    }
    if (!isItsOwnSource) { // which its reader has locked
        if (const int error = LockForWriting(calls_, target.Number())) {
            throw LockFailure(kCouldNotWrite, path, error);
        }
    }
    return std::make_unique<Replacement>(calls_, journal_, waiting_, path, std::move(target),
                                         opened.status, start, isItsOwnSource ? source : nullptr);
}

/// Refuses what is open for writing, but must not be written into.
void JournaledWriter::RefuseTarget(std::u16string_view path, int descriptor,
                                   const FileStatus& status) {
    const std::u16string_view reason = ReasonToRefuse(descriptor, status);
    if (!reason.empty()) {
        throw FileFailure(kCouldNotWrite, path, reason);
    }
    if (journal_.Is(status) || HoldsRecord(calls_, descriptor, status)) {
        throw FileFailure(kCouldNotWrite, path, u"It is a journal of this program");
    }
}

void JournaledWriter::Settle() noexcept {
    journal_.Settle();
    looked_ = false;
}

void JournaledWriter::RefuseWaiting(std::u16string_view path, const FileStatus& file) const {
    if (std::any_of(waiting_.begin(), waiting_.end(),
                    [&](const FileStatus& waiting) { return waiting.SameFileAs(file); })) {
        throw FileFailure(kCouldNotWrite, path,
                          u"It is written in part, and will be completed at the next start of the "
                          u"program");
    }
}

} // namespace vexmarrow

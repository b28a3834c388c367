// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/JournaledWriter.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "journal/Creation.h"
#include "journal/JournalRecord.h"
#include "journal/PutInPlace.h"
#include "journal/Replacement.h"
#include "journal/Whole.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <unistd.h>

namespace vexmarrow {
namespace {

/// Why an existing file cannot be opened for writing.
Failure OpenFailure(std::u16string_view path, const FileStatus& status, int error) {
    if (error == EWOULDBLOCK) {
        return FileFailure(kCouldNotWrite, path, u"It is locked by another program");
    }
    if (error == EPERM && (status.mode & (S_ISUID | S_ISGID)) != 0) {
        return FileFailure(kCouldNotWrite, path,
                           u"Its set-id bits would be lost, which only its owner can give back");
    }
    return FileFailure(kCouldNotWrite, path, error);
}

/// Whether a file is a journal, of whatever process, or a record that was kept. They are the
/// user's own and open to nobody else.
bool HoldsRecord(SystemCalls& calls, int descriptor, const FileStatus& status) {
    constexpr mode_t kOthersRights = 0077;
    if (status.owner != ::geteuid() || (status.mode & kOthersRights) != 0) {
        return false;
    }
    std::array<char, kRecordMark.size()> first{};
    std::size_t got = 0;
    return ReadWhole(calls, descriptor, first.data(), first.size(), 0, got) == 0 &&
           std::string_view(first.data(), got) == kRecordMark;
}

/// Refuses to write where a result would take the place of something else than what it was made
/// from.
void RefuseStranger(const SourceFile& source, std::u16string_view path, const FileStatus& target) {
    if (target.SameFileAs(source.status)) {
        if (!target.SameContentsAs(source.status)) {
            throw FileFailure(kCouldNotWrite, path,
                              u"Another program has changed it since it was read");
        }
    } else if (source.path == path) {
        throw FileFailure(kCouldNotWrite, path,
                          u"Another program has put another file in its place since it was read");
    }
}

} // namespace

std::unique_ptr<PendingFile> JournaledWriter::Begin(std::u16string_view path, WriteStart start,
                                                    const SourceFile* source) {
    if (source != nullptr) {
        RefuseRetired(source->path, source->status);
    }
    FileStatus status;
    int error = 0;
    Descriptor target(calls_, OpenInPlace(calls_, NativeName(path), status, error));
    if (error == ENOENT) {
        return std::make_unique<Creation>(calls_, journal_, path);
    }
    if (error != 0) {
        throw OpenFailure(path, status, error);
    }
    if (!status.IsRegular()) {
        throw FileFailure(kCouldNotWrite, path, u"It is not a regular file");
    }
    if (journal_.Is(status) || HoldsRecord(calls_, target.Number(), status)) {
        throw FileFailure(kCouldNotWrite, path, u"It is a journal of this program");
    }
    RefuseRetired(path, status);
    if (source != nullptr) {
        RefuseStranger(*source, path, status);
    }
    return std::make_unique<Replacement>(calls_, journal_, retired_, path, std::move(target),
                                         status, start);
}

void JournaledWriter::RefuseRetired(std::u16string_view path, const FileStatus& file) const {
    if (std::any_of(retired_.begin(), retired_.end(),
                    [&](const FileStatus& waiting) { return waiting.SameFileAs(file); })) {
        throw FileFailure(kCouldNotWrite, path,
                          u"It is written in part, and will be completed at the next start of the "
                          u"program");
    }
}

} // namespace vexmarrow

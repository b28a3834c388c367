// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/Creation.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "journal/Journal.h"
#include "journal/JournalFolders.h"
#include "journal/Replacement.h"
#include "journal/Whole.h"

#include <cerrno>
#include <fcntl.h>

namespace vexmarrow {
namespace {

constexpr mode_t kNewFileMode = 0666; // less what the user's mask takes away
constexpr std::string_view kPassingPrefix = ".vexmarrow-";
constexpr std::size_t kRandomBytes = 16;

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// Whether a file system cannot have files without a name. Some old ones take the request for one
/// to write into the folder.
bool IsLackOfNamelessFiles(int error) {
    return error == EOPNOTSUPP || error == EISDIR || error == EINVAL || error == ENOSYS;
}

} // namespace

Creation::Creation(SystemCalls& calls, Journal& journal, std::u16string_view path)
    : calls_(calls),
      journal_(journal),
      path_(path),
      nativePath_(NativeName(path)),
      file_(calls, nativePath_.empty()
                       ? -1
                       : calls.Open(FolderOf(nativePath_), O_TMPFILE | O_WRONLY | O_CLOEXEC,
                                    kNewFileMode)) {
    if (nativePath_.empty()) {
        Fail(ENOENT);
    }
    if (!file_.IsOpen()) {
        if (!IsLackOfNamelessFiles(errno)) {
            Fail(errno);
        }
        MakeWithPassingName(FolderOf(nativePath_));
    }
}

Creation::~Creation() {
    if (!passingName_.empty()) {
        file_.Close();
        calls_.Unlink(passingName_);
        journal_.Done();
    }
}

/// The journal knows the name before there is a file, and the file itself before there is a byte
/// in it.
void Creation::MakeWithPassingName(const std::string& folder) {
    const std::string name = folder + "/" + std::string(kPassingPrefix) + RandomHex(kRandomBytes);
    JournalRecord record;
    record.kind = RecordKind::Creation;
    record.path = FullPath(name);
    record.begun = Now();
    journal_.Begin(record);
    journal_.Seal();
    Descriptor made(calls_,
                    calls_.Open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode));
    if (!made.IsOpen()) {
        const int error = errno;
        journal_.Done();
        Fail(error);
    }
    try {
        if (calls_.Status(made.Number(), record.target) != 0) {
            Fail(errno);
        }
        journal_.Begin(record);
        journal_.Seal();
    } catch (...) {
        calls_.Unlink(name);
        journal_.Done();
        throw;
    }
    passingName_ = name;
    file_ = std::move(made);
}

void Creation::Append(std::string_view bytes) {
    buffer_ += bytes;
    if (buffer_.size() >= kCopyBlock) {
        Write();
    }
}

void Creation::Write() {
    std::uint64_t written = 0;
    if (const int error = WriteWhole(calls_, file_.Number(), buffer_, written_, written)) {
        Fail(error);
    }
    written_ += written;
    buffer_.clear();
}

void Creation::Commit() {
    Write();
    if (passingName_.empty()) {
        if (calls_.NameFile(file_.Number(), nativePath_) != 0) {
            Fail(errno);
        }
        if (file_.Close() != 0 && errno != EINTR) {
            const int error = errno;
            calls_.Unlink(nativePath_);
            Fail(error);
        }
        return;
    }
    if (file_.Close() != 0 && errno != EINTR) {
        Fail(errno);
    }
    if (calls_.RenameToNew(passingName_, nativePath_) != 0) {
        Fail(errno);
    }
    passingName_.clear();
    journal_.Done();
}

void Creation::Fail(int error) const {
    FileStatus status;
    if (error == EEXIST && calls_.StatusOfName(nativePath_, status) == 0) {
        throw FileFailure(kCouldNotWrite, path_,
                          S_ISLNK(status.mode)
                              ? u"It is a link to nowhere"
                              : u"Another program has made a file of that name meanwhile");
    }
    throw FileFailure(kCouldNotWrite, path_, error);
}

bool IsPassingName(std::string_view name) {
    return name.starts_with(kPassingPrefix) &&
           name.size() == kPassingPrefix.size() + 2 * kRandomBytes;
}

} // namespace vexmarrow

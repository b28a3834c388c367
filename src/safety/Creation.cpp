// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/Creation.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "safety/LogFolders.h"
#include "safety/PutInPlace.h"
#include "safety/Replacement.h"
#include "textio/Paths.h"

#include <cerrno>
#include <fcntl.h>

namespace vexmarrow {
namespace {

constexpr mode_t kReadAndWrite = 0666; // less what the user's mask takes away
constexpr mode_t kOfOwner = 0600;
constexpr mode_t kOfGroup = 0060;
constexpr mode_t kOfAll = 0006;
constexpr std::string_view kPassingPrefix = "/.vexmarrow-";
constexpr std::size_t kRandomBytes = 16;

/// Whether a file system cannot have files without a name. Some old ones take the request for one
/// to write into the folder.
bool IsLackOfNamelessFiles(int error) {
    return error == EOPNOTSUPP || error == EISDIR || error == EINVAL || error == ENOSYS;
}

} // namespace

Creation::Creation(SystemCalls& calls, RunLog& log, std::u16string_view path)
    : calls_(calls), log_(log), path_(path), nativePath_(NativeName(path)), file_(calls) {}

/// What fails here ends with the destructor: all members are made before.
Creation::Creation(SystemCalls& calls, RunLog& log, std::u16string_view path,
                   const FileStatus* model)
    : Creation(calls, log, path) {
    if (nativePath_.empty()) {
        Fail(ENOENT);
    }
    const mode_t mode =
        model != nullptr ? (model->mode & (kOfGroup | kOfAll)) | kOfOwner : kReadAndWrite;
    file_ = Descriptor(
        calls_, calls_.Open(ParentFolder(nativePath_), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode));
    if (!file_.IsOpen()) {
        if (!IsLackOfNamelessFiles(errno)) {
            Fail(errno);
        }
        MakeWithPassingName(mode);
    }
    if (model != nullptr) {
        LimitRights(*model);
    }
}

Creation::~Creation() {
    if (open_) {
        file_.Close();
        const std::string& passingName = open_->record.passingName;
        if (passingName.empty() || calls_.Unlink(passingName) == 0 || errno == ENOENT) {
            log_.Settle(*open_, RecordState::Closed);
        } // else the next start removes it
    }
}

/// The log knows the name before there is a file. It is tried once: what else has it is not ours.
void Creation::MakeWithPassingName(mode_t mode) {
    RunRecord record;
    record.kind = RecordKind::Creation;
    record.path = FullPath(nativePath_);
    record.passingName =
        ParentFolder(record.path).append(kPassingPrefix).append(RandomHex(kRandomBytes));
    record.begun = Now();
    MemoryBytes nothing;
    PlacedRecord placed = log_.Keep(std::move(record), nothing);
    file_ = Descriptor(calls_, calls_.Open(placed.record.passingName,
                                           O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!file_.IsOpen()) {
        const int error = errno;
        log_.Settle(placed, RecordState::Closed);
        Fail(error);
    }
    open_ = std::move(placed);
}

/// The group of a new file may be another than that of the file it is made from: then it may do no
/// more than everybody.
void Creation::LimitRights(const FileStatus& model) {
    FileStatus made;
    if (calls_.Status(file_.Number(), made) != 0) {
        Fail(errno);
    }
    const mode_t asAll = (made.mode & kOfAll) * (kOfGroup / kOfAll);
    if (made.group != model.group && (made.mode & kOfGroup & ~asAll) != 0 &&
        calls_.SetMode(file_.Number(),
                       (made.mode & (kOfOwner | kOfAll)) | (made.mode & kOfGroup & asAll)) != 0) {
        Fail(errno);
    }
    written_.file = made;
}

void Creation::Append(std::string_view bytes) {
    buffer_ += bytes;
    if (buffer_.size() >= kCopyBlock) {
        Write();
    }
}

void Creation::Write() {
    if (const int error = WriteWhole(calls_, file_.Number(), buffer_, written_.size)) {
        Fail(error);
    }
    checksum_.Add(buffer_);
    written_.size += buffer_.size();
    buffer_.clear();
}

void Creation::Seal() {
    Write();
    written_.checksum = checksum_.Value();
    if (written_.file.inode == 0 && calls_.Status(file_.Number(), written_.file) != 0) {
        Fail(errno);
    }
    if (open_) {
        if (const int error = log_.AddTail(*open_, written_)) {
            Fail(error);
        }
        return;
    }
    RunRecord record;
    record.kind = RecordKind::Creation;
    record.path = FullPath(nativePath_);
    record.begun = Now();
    MemoryBytes nothing;
    open_ = log_.Keep(std::move(record), nothing, written_);
}

void Creation::Commit() {
    if (const int error = ErrorOfClosing(calls_, file_.Number())) {
        Fail(error);
    }
    const std::string& passingName = open_->record.passingName;
    if ((passingName.empty() ? calls_.NameFile(file_.Number(), nativePath_)
                             : calls_.RenameToNew(passingName, nativePath_)) != 0) {
        Fail(errno);
    }
    log_.Settle(*open_, RecordState::Done);
    open_.reset();
    file_.Close();
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

bool IsPassingName(std::string_view path) {
    const std::size_t slash = path.find_last_of('/');
    return slash != std::string_view::npos && path.substr(slash).starts_with(kPassingPrefix) &&
           path.size() - slash == kPassingPrefix.size() + 2 * kRandomBytes;
}

} // namespace vexmarrow

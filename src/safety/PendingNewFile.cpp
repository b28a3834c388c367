// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/PendingNewFile.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "safety/OldText.h"
#include "safety/PendingOverwrite.h"
#include "safety/RandomNumbers.h"
#include "textio/Descriptor.h"
#include "textio/OpenedFile.h"
#include "textio/Paths.h"

#include <cerrno>
#include <fcntl.h>

namespace vexmarrow {
namespace {

constexpr mode_t kReadAndWrite = 0666; // which the user's mask reduces
constexpr mode_t kOwnerRights = 0600;
constexpr mode_t kGroupRights = 0060;
constexpr mode_t kOthersRights = 0006;
constexpr std::string_view kTemporaryPrefix = "/.vexmarrow-";
constexpr std::size_t kRandomBytes = 16;

/// Whether an error means that the file system has no files without a name. Some old file systems
/// then report an attempt to write to the folder.
bool IsLackOfNamelessFiles(int error) {
    return error == EOPNOTSUPP || error == EISDIR || error == EINVAL || error == ENOSYS;
}

} // namespace

PendingNewFile::PendingNewFile(SystemCalls& calls, LogWriter& log, std::u16string_view path)
    : calls_(calls), log_(log), path_(path), nativePath_(NativeName(path)), file_(calls) {}

/// Delegates first, so that the destructor runs when the rest fails.
PendingNewFile::PendingNewFile(SystemCalls& calls, LogWriter& log, std::u16string_view path,
                               const FileStatus* model)
    : PendingNewFile(calls, log, path) {
    if (nativePath_.empty()) {
        Fail(ENOENT);
    }
    const mode_t mode = model != nullptr
                            ? (model->mode & (kGroupRights | kOthersRights)) | kOwnerRights
                            : kReadAndWrite;
    file_ = Descriptor(
        calls_, calls_.Open(ParentFolder(nativePath_), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode));
    if (!file_.IsOpen()) {
        if (!IsLackOfNamelessFiles(errno)) {
            Fail(errno);
        }
        MakeWithTemporaryName(mode);
    }
    if (model != nullptr) {
        LimitRights(*model);
    }
}

PendingNewFile::~PendingNewFile() {
    if (open_) {
        file_.Close();
        const std::string& temporaryName = open_->head.temporaryName;
        if (temporaryName.empty() || calls_.Unlink(temporaryName) == 0 || errno == ENOENT) {
            log_.Settle(*open_, RecordState::Closed);
        } // otherwise recovery removes the file
    }
}

/// Writes the name to the log first. A taken name is an error, because that file is not ours.
void PendingNewFile::MakeWithTemporaryName(mode_t mode) {
    std::string name = ParentFolder(FullPath(nativePath_));
    OpenRecord(name.append(kTemporaryPrefix).append(RandomHex(kRandomBytes)), std::nullopt);
    file_ = Descriptor(calls_, calls_.Open(open_->head.temporaryName,
                                           O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!file_.IsOpen()) {
        const int error = errno;
        log_.Settle(*open_, RecordState::Closed);
        open_.reset();
        Fail(error);
    }
}

void PendingNewFile::OpenRecord(const std::string& temporaryName,
                                const std::optional<RecordTail>& tail) {
    RecordHead head;
    head.kind = RecordKind::NewFile;
    head.path = FullPath(nativePath_);
    head.temporaryName = temporaryName;
    MemoryBytes nothing;
    open_ = log_.AddRecord(std::move(head), nothing, tail);
}

/// Gives a group other than that of `model` no more rights than everyone has.
void PendingNewFile::LimitRights(const FileStatus& model) {
    FileStatus made;
    if (calls_.Status(file_.Number(), made) != 0) {
        Fail(errno);
    }
    const mode_t asAll = (made.mode & kOthersRights) * (kGroupRights / kOthersRights);
    if (made.group != model.group && (made.mode & kGroupRights & ~asAll) != 0 &&
        calls_.SetMode(file_.Number(), (made.mode & (kOwnerRights | kOthersRights)) |
                                           (made.mode & kGroupRights & asAll)) != 0) {
        Fail(errno);
    }
    written_.file = made;
}

void PendingNewFile::Append(std::string_view bytes) {
    buffer_ += bytes;
    if (buffer_.size() >= kCopyBlock) {
        Write();
    }
}

void PendingNewFile::Write() {
    if (const int error = WriteWhole(calls_, file_.Number(), buffer_, written_.size)) {
        Fail(error);
    }
    checksum_.Add(buffer_);
    written_.size += buffer_.size();
    buffer_.clear();
}

void PendingNewFile::Seal() {
    Write();
    written_.checksum = checksum_.Value();
    if (written_.file.inode == 0 && calls_.Status(file_.Number(), written_.file) != 0) {
        Fail(errno);
    }
    if (!open_) {
        OpenRecord({}, written_);
    } else if (const int error = log_.AddTail(*open_, written_)) {
        Fail(error);
    }
}

void PendingNewFile::Commit() {
    if (const int error = ErrorOfClosing(calls_, file_.Number())) {
        Fail(error);
    }
    const std::string& temporaryName = open_->head.temporaryName;
    if ((temporaryName.empty() ? calls_.NameFile(file_.Number(), nativePath_)
                               : calls_.RenameToNew(temporaryName, nativePath_)) != 0) {
        Fail(errno);
    }
    log_.Settle(*open_, RecordState::Done);
    open_.reset();
    file_.Close();
}

void PendingNewFile::Fail(int error) const {
    FileStatus status;
    if (error == EEXIST && calls_.StatusOfName(nativePath_, status) == 0) {
        throw FileFailure(kCouldNotWrite, path_,
                          S_ISLNK(status.mode)
                              ? u"It is a link to a file that does not exist"
                              : u"Another program has just created a file with this name");
    }
    throw FileFailure(kCouldNotWrite, path_, error);
}

bool IsTemporaryName(std::string_view path) {
    const std::size_t slash = path.find_last_of('/');
    return slash != std::string_view::npos && path.substr(slash).starts_with(kTemporaryPrefix) &&
           path.size() - slash == kTemporaryPrefix.size() + 2 * kRandomBytes;
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/Journal.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "journal/JournalFolders.h"
#include "journal/Whole.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

namespace vexmarrow {
namespace {

/// Payloads up to this size reach the disk together with their header, in one call.
constexpr std::size_t kMostInMemory = std::size_t{1024} * 1024;

/// A buffer that had to be larger than this, in bytes, is not kept for the next file.
constexpr std::size_t kMostToKeep = 4 * kMostInMemory;

} // namespace

Journal::Journal(SystemCalls& calls, std::vector<std::string> folders)
    : calls_(calls), folders_(std::move(folders)), machine_(NameOfMachine()) {}

Journal::~Journal() {
    Remove();
}

void Journal::Begin(JournalRecord record) {
    record_ = std::move(record);
    record_.machine = machine_;
    record_.payloadSize = 0;
    headerSize_ = EncodeHeader(record_).size();
    if (buffer_.capacity() > kMostToKeep) {
        buffer_ = {};
    }
    buffer_.assign(headerSize_, '\0');
    onDisk_ = 0;
    checksum_.Restart();
}

void Journal::Append(std::string_view bytes) {
    buffer_ += bytes;
    if (buffer_.size() >= kMostInMemory) {
        Spill();
    }
}

/// Moves the payload in the buffer to disk.
void Journal::Spill() {
    const std::size_t begin = onDisk_ == 0 ? headerSize_ : 0;
    const std::string_view part = std::string_view(buffer_).substr(begin);
    if (part.empty()) {
        return;
    }
    Put(headerSize_ + onDisk_, part);
    checksum_.Add(part);
    onDisk_ += part.size();
    buffer_.clear();
}

void Journal::Seal() {
    if (onDisk_ == 0) {
        const std::string_view payload = std::string_view(buffer_).substr(headerSize_);
        record_.payloadSize = payload.size();
        record_.payloadChecksum = ChecksumOf(payload);
        const std::string header = EncodeHeader(record_);
        std::copy(header.begin(), header.end(), buffer_.begin());
        Put(0, buffer_);
        return;
    }
    Spill();
    record_.payloadSize = onDisk_;
    record_.payloadChecksum = checksum_.Value();
    if (!copy_) {
        copy_ = std::make_unique<char[]>(kCopyBlock); // NOLINT(*-avoid-c-arrays)
    }
    Put(0, EncodeHeader(record_));
}

int Journal::Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) {
    if (onDisk_ == 0) {
        bytes = std::string_view(buffer_).substr(headerSize_ + offset, most);
        return 0;
    }
    std::size_t got = 0;
    const int error =
        file_->Read(headerSize_ + offset, copy_.get(), std::min(most, kCopyBlock), got);
    bytes = {copy_.get(), got};
    return error == 0 && got == 0 ? EIO : error; // somebody has cut the journal
}

/// Writes into the journal of the first folder that takes it.
void Journal::Put(std::uint64_t offset, std::string_view bytes) {
    for (;;) {
        if (!file_ && !OpenIn(folders_[folder_])) {
            MoveOn(errno);
            continue;
        }
        const int error = file_->Write(offset, bytes);
        if (error == 0) {
            return;
        }
        MoveOn(error);
    }
}

/// Turns to the next folder because of a failure in this one. Throws when there is none.
void Journal::MoveOn(int error) {
    reasons_ += Concat(reasons_.empty() ? u"" : u"; ", TextFromNativeName(folders_[folder_]), u": ",
                       TextFromUtf8(std::generic_category().message(error)));
    std::optional<JournalFile> old;
    if (file_) {
        old.emplace(std::move(*file_));
        file_.reset();
    }
    // A header that reached the disk in part, before its payload, must not be taken for a record.
    bool moved = false;
    while (!moved && ++folder_ < folders_.size()) {
        moved = OpenIn(folders_[folder_]) && (onDisk_ == 0 || (old && CopyPayloadFrom(*old)));
        if (!moved) {
            reasons_ += Concat(u"; ", TextFromNativeName(folders_[folder_]), u": ",
                               TextFromUtf8(std::generic_category().message(errno)));
            Remove();
        }
    }
    if (old) {
        old->Clear();
        old->Remove();
    }
    if (!moved) {
        folder_ = 0; // there may be room again for the next file
        throw Failure(Concat(u"Could not write the file \"", TextFromNativeName(record_.path),
                             u"\": its new text cannot be kept safe while it is written (",
                             std::exchange(reasons_, {}), u")."));
    }
}

bool Journal::OpenIn(const std::string& folder) {
    int error = 0;
    std::optional<JournalFile> opened = JournalFile::Create(calls_, folder, error);
    if (!opened) {
        errno = error;
        return false;
    }
    file_.emplace(std::move(*opened));
    return true;
}

bool Journal::CopyPayloadFrom(JournalFile& old) {
    const auto block = std::make_unique<char[]>(kCopyBlock); // NOLINT(*-avoid-c-arrays)
    for (std::uint64_t done = 0; done < onDisk_;) {
        const std::size_t most = std::min<std::uint64_t>(kCopyBlock, onDisk_ - done);
        std::size_t got = 0;
        int error = old.Read(headerSize_ + done, block.get(), most, got);
        if (error == 0) {
            error = got == most ? file_->Write(headerSize_ + done, {block.get(), got}) : EIO;
        }
        if (error != 0) {
            errno = error;
            return false;
        }
        done += got;
    }
    return true;
}

void Journal::Done() noexcept {
    if (file_ && file_->Clear() != 0) {
        Remove(); // a journal that cannot be marked must not outlive the file it has completed
    }
}

void Journal::Retire() noexcept {
    file_.reset();
}

void Journal::Settle() noexcept {
    Remove();
    folder_ = 0;
    reasons_.clear();
    buffer_ = {};
}

bool Journal::Is(const FileStatus& file) const {
    return file_ && file_->Status().SameFileAs(file);
}

void Journal::Remove() noexcept {
    if (file_) {
        file_->Remove();
        file_.reset();
    }
}

} // namespace vexmarrow

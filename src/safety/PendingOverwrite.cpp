// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/PendingOverwrite.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "safety/OldText.h"
#include "shell/Trap.h"
#include "textio/Checksum.h"
#include "textio/InputFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kChangedMeanwhile =
    u"Another program has just changed, removed or replaced it";

/// The length of the common beginning of `a` and `b`, which is not shorter than `a`.
std::size_t CommonLength(std::string_view a, std::string_view b) {
    constexpr std::size_t kBlock = 256;
    std::size_t same = 0;
    while (a.size() - same >= kBlock && std::memcmp(&a[same], &b[same], kBlock) == 0) {
        same += kBlock;
    }
    while (same < a.size() && a[same] == b[same]) {
        ++same;
    }
    return same;
}

} // namespace

int PendingOverwrite::Number() const {
    return target_.IsOpen() ? target_.Number() : source_->Number();
}

void PendingOverwrite::Append(std::string_view bytes) {
    result_ += bytes;
    if (result_.size() > kSmallText && (open_ || !SkipUnchanged(Part::Middle))) {
        if (!open_) {
            OpenRecord(Part::Middle);
        }
        Write();
    }
}

void PendingOverwrite::Seal() {
    if (!open_ && !SkipUnchanged(Part::Last)) {
        OpenRecord(Part::Last);
    }
}

void PendingOverwrite::ChooseOldSource(Part part) {
    const std::optional<std::string_view> whole =
        part == Part::Last && isItself_ ? source_->Whole() : std::nullopt;
    if (whole) {
        inMemory_ = MemoryBytes(*whole);
        old_ = &inMemory_;
    } else {
        inFile_ = std::make_unique<FileBytes>(calls_, Number(), 0, status_.size);
        old_ = inFile_.get();
    }
}

/// How many of these bytes of the result equal the file at offset `done_`.
std::size_t PendingOverwrite::LengthOfUnchanged(std::string_view bytes) {
    std::size_t same = 0;
    while (same < bytes.size() && done_ + same < status_.size) {
        std::string_view there;
        if (const int error = old_->Show(done_ + same, bytes.size() - same, there)) {
            FailToRead(error);
        }
        const std::size_t more = CommonLength(there, bytes.substr(same));
        same += more;
        if (more < there.size()) {
            break;
        }
    }
    return same;
}

/// Removes the beginning of the result that equals the file. Returns true if no difference was
/// found so far; for the last part, if the whole result equals the file.
bool PendingOverwrite::SkipUnchanged(Part part) {
    if (old_ == nullptr) {
        ChooseOldSource(part);
    }
    const std::size_t same = LengthOfUnchanged(result_);
    if (part == Part::Last && same == result_.size() && done_ + same == status_.size) {
        return true; // nothing will be written, so no checksum is needed
    }
    checksum_.Add(std::string_view(result_).substr(0, same));
    done_ += same;
    result_.erase(0, same);
    return result_.empty() && part == Part::Middle;
}

/// Copies the bytes that will be overwritten to the log. If the result is not complete, the rest of
/// the source is read from there, where no other program can change it.
void PendingOverwrite::OpenRecord(Part part) {
    RecordHead head;
    head.path = FullPath(NativeName(path_));
    head.old = status_;
    if (status_.size > kSmallText) { // a small text is kept as a whole
        // In a text that repeats itself, the result may have got ahead of what was read.
        head.keptFrom = isItself_ ? std::min(done_, source_->Position()) : done_;
    }
    Checksum checksum = checksum_; // of the common beginning
    if (const int error = checksum.Add(*old_, done_, status_.size - done_)) {
        FailToRead(error);
    }
    head.checksum = checksum.Value();
    std::optional<RecordTail> tail;
    if (part == Part::Last) {
        checksum = checksum_;
        checksum.Add(result_);
        tail = {done_ + result_.size(), checksum.Value(), {}};
    }
    others_.ReserveOne(); // no memory may be needed after the file has changed
    if (inFile_ == nullptr) {
        inFile_ = std::make_unique<FileBytes>(calls_, -1, 0, status_.size);
    }
    open_ = log_.AddRecord(std::move(head), *old_, tail);
    inFile_->MoveTo(log_.File()->Number(), open_->KeptAt());
    if (part == Part::Middle) {
        CheckTargetUnchanged(); // before the source hands its file over
    }
    if (!target_.IsOpen()) {
        target_ = source_->HandOver();
    }
    if (part == Part::Middle && isItself_) {
        source_->ContinueInCopy(log_.File()->Number(),
                                static_cast<std::int64_t>(open_->KeptAt() - open_->head.keptFrom));
    }
}

void PendingOverwrite::Write() {
    touched_ = true;
    if (const int error = WriteWhole(calls_, target_.Number(), result_, done_)) {
        Fail(error);
    }
    checksum_.Add(result_);
    done_ += result_.size();
    result_.clear();
}

/// Throws Failure unless the path still leads to the file that was opened, and it is unchanged.
void PendingOverwrite::CheckTargetUnchanged() {
    FileStatus now;
    if (calls_.StatusOfTarget(NativeName(path_), now) != 0 || !now.SameFileAs(status_) ||
        !now.SameContentsAs(status_)) {
        throw FileFailure(kCouldNotWrite, path_, kChangedMeanwhile);
    }
}

void PendingOverwrite::Commit() {
    if (!open_) {
        return; // the file holds the result already
    }
    if (!touched_ && !isItself_) { // otherwise it was checked already
        CheckTargetUnchanged();
    }
    Write();
    if (done_ < status_.size && calls_.Truncate(target_.Number(), done_) != 0) {
        Fail(errno);
    }
    if (const int error = ErrorOfClosing(calls_, target_.Number())) {
        Fail(error);
    }
    if (!open_->tail) {
        if (const int error = log_.AddTail(*open_, {done_, checksum_.Value(), {}})) {
            Fail(error);
        }
    }
    if (!log_.Settle(*open_, RecordState::Done)) {
        others_.Add(std::move(*open_));
    }
    open_.reset();
    target_.Close();
}

void PendingOverwrite::FailToRead(int error) const {
    throw error == ENODATA ? FileFailure(kCouldNotWrite, path_, kChangedMeanwhile)
                           : FileFailure(u"Could not read the file", path_, error);
}

void PendingOverwrite::Fail(int error) {
    if (PutOldTextBack()) {
        throw FileFailure(kCouldNotWrite, path_, error);
    }
    throw FileFailure(kCouldNotWrite, path_, Concat(ReasonOf(error), u". ", kPartlyWritten));
}

/// Whether the file still has its old text, although putting it back has failed. A full disk that
/// copies data on every write refuses even the first byte of the result.
bool PendingOverwrite::HoldsOldText() noexcept {
    bool holds = false;
    FailureOf([&] {
        FileStatus now;
        holds = calls_.Status(target_.Number(), now) == 0 &&
                ContentOf(calls_, target_.Number(), now, *open_) == Content::Old;
        if (holds) {
            calls_.SetModified(target_.Number(), status_.modified);
        }
    });
    return holds;
}

/// Returns whether the file has its old text; otherwise its record remains open.
bool PendingOverwrite::PutOldTextBack() noexcept {
    if (!open_) {
        return true;
    }
    const bool isWhole = !touched_ ||
                         RestoreOldText(calls_, target_.Number(), *open_, *inFile_).state ==
                             RestoreState::Restored ||
                         HoldsOldText();
    if (isWhole) {
        log_.Settle(*open_, RecordState::Closed);
    } else {
        others_.Add(std::move(*open_));
    }
    open_.reset();
    return isWhole;
}

} // namespace vexmarrow

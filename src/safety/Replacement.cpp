// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/Replacement.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "safety/LogFolders.h"
#include "safety/PutInPlace.h"
#include "shell/Trap.h"
#include "textio/InputFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kChangedMeanwhile =
    u"Another program has changed, removed or replaced it meanwhile";

/// How many bytes `a` begins with that `b`, which is not shorter, begins with, too. Most texts have
/// much in common, and memcmp sees many bytes at once.
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

/// The file, which is handed over when it is about to be written.
int Replacement::Number() const {
    return target_.IsOpen() ? target_.Number() : source_->Number();
}

void Replacement::Append(std::string_view bytes) {
    result_ += bytes;
    if (result_.size() > kSmallText && (open_ || !SkipSame(Part::Middle))) {
        if (!open_) {
            OpenRecord(Part::Middle);
        }
        Write();
    }
}

void Replacement::Seal() {
    if (!open_ && !SkipSame(Part::Last)) {
        OpenRecord(Part::Last);
    }
}

void Replacement::ChooseOld(Part part) {
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

/// How many bytes go on like the file.
std::size_t Replacement::LengthOfSame(std::string_view bytes) {
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

/// Drops what the file holds already from the front of the result. Returns whether the file may
/// stay as it is, as far as the result has come.
bool Replacement::SkipSame(Part part) {
    if (old_ == nullptr) {
        ChooseOld(part);
    }
    const std::size_t same = LengthOfSame(result_);
    if (part == Part::Last && same == result_.size() && done_ + same == status_.size) {
        return true; // for good: no checksum is needed
    }
    checksum_.Add(std::string_view(result_).substr(0, same));
    done_ += same;
    result_.erase(0, same);
    return result_.empty() && part == Part::Middle;
}

/// What is to be overwritten goes into the log. In the middle of a result, the source is read on
/// from there: nobody can change that.
void Replacement::OpenRecord(Part part) {
    RunRecord record;
    record.path = FullPath(NativeName(path_));
    record.old = status_;
    record.begun = Now();
    if (status_.size > kSmallText) { // a small text is at hand as a whole
        // The result may be ahead of what was read: where both are one letter, again and again.
        record.keptFrom = isItself_ ? std::min(done_, source_->Position()) : done_;
    }
    Checksum checksum = checksum_; // of what both have in common
    if (const int error = checksum.Add(*old_, done_, status_.size - done_)) {
        FailToRead(error);
    }
    record.checksum = checksum.Value();
    std::optional<WrittenText> written;
    if (part == Part::Last) {
        checksum = checksum_;
        checksum.Add(result_);
        written = {done_ + result_.size(), checksum.Value(), {}};
    }
    others_.MakeRoomForOne(); // nothing may fail for want of memory once the file is touched
    if (inFile_ == nullptr) {
        inFile_ = std::make_unique<FileBytes>(calls_, -1, 0, status_.size);
    }
    open_ = log_.Keep(std::move(record), *old_, written);
    inFile_->MoveTo(log_.File()->Number(), open_->KeptAt());
    if (part == Part::Middle) {
        LookAgain(); // while the source still has its file
    }
    if (!target_.IsOpen()) {
        target_ = source_->HandOver();
    }
    if (part == Part::Middle && isItself_) {
        source_->ContinueInCopy(
            log_.File()->Number(),
            static_cast<std::int64_t>(open_->KeptAt() - open_->record.keptFrom));
    }
}

void Replacement::Write() {
    touched_ = true;
    if (const int error = WriteWhole(calls_, target_.Number(), result_, done_)) {
        Fail(error);
    }
    checksum_.Add(result_);
    done_ += result_.size();
    result_.clear();
}

/// The name must still lead to the file that was opened, as it was then.
void Replacement::LookAgain() {
    FileStatus now;
    if (calls_.StatusOfTarget(NativeName(path_), now) != 0 || !now.SameFileAs(status_) ||
        !now.SameContentsAs(status_)) {
        throw FileFailure(kCouldNotWrite, path_, kChangedMeanwhile);
    }
}

void Replacement::Commit() {
    if (!open_) {
        return; // the file holds the result already
    }
    if (!touched_ && !isItself_) { // whose reader has just looked
        LookAgain();
    }
    Write();
    if (done_ < status_.size && calls_.Truncate(target_.Number(), done_) != 0) {
        Fail(errno);
    }
    if (const int error = ErrorOfClosing(calls_, target_.Number())) {
        Fail(error);
    }
    if (!open_->written) {
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

void Replacement::FailToRead(int error) const {
    throw error == ENODATA ? FileFailure(kCouldNotWrite, path_, kChangedMeanwhile)
                           : FileFailure(u"Could not read the file", path_, error);
}

void Replacement::Fail(int error) {
    if (PutOldTextBack()) {
        throw FileFailure(kCouldNotWrite, path_, error);
    }
    throw FileFailure(kCouldNotWrite, path_, Concat(ReasonOf(error), u". ", kWrittenInPart));
}

/// Whether no write has reached the file: a full disk that copies what is written refuses the first
/// byte already, and then those that are put back.
bool Replacement::HoldsOldText() noexcept {
    bool holds = false;
    FailureOf([&] {
        FileStatus now;
        holds = calls_.Status(target_.Number(), now) == 0 &&
                HoldingOf(calls_, target_.Number(), now, *open_) == Holding::Old;
        if (holds) {
            calls_.SetModified(target_.Number(), status_.modified);
        }
    });
    return holds;
}

/// Returns whether the file is as it was.
bool Replacement::PutOldTextBack() noexcept {
    if (!open_) {
        return true;
    }
    const bool isWhole =
        !touched_ ||
        PutBack(calls_, target_.Number(), *open_, *inFile_).state == PutBackState::Whole ||
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

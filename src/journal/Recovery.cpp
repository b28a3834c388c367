// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/Recovery.h"

#include "base/Text.h"
#include "base/Utf8.h"
#include "journal/Creation.h"
#include "journal/JournalFolders.h"
#include "journal/KeptCopies.h"
#include "journal/PutInPlace.h"
#include "journal/Whole.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <optional>
#include <system_error>
#include <unistd.h>

namespace vexmarrow {
namespace {

/// What the sources below answer where there are fewer bytes than there should be.
constexpr int kEnded = ENODATA;

/// The bytes of an open file that begin at an offset.
class FileBytes final : public ByteSource {
public:
    FileBytes(SystemCalls& calls, int descriptor, std::uint64_t begin = 0)
        : calls_(calls), descriptor_(descriptor), begin_(begin), block_(kCopyBlock, '\0') {}

    int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) override {
        std::size_t got = 0;
        const int error = ReadWhole(calls_, descriptor_, block_.data(),
                                    std::min(most, block_.size()), begin_ + offset, got);
        bytes = std::string_view(block_).substr(0, got);
        return error == 0 && got == 0 ? kEnded : error;
    }

private:
    SystemCalls& calls_;
    int descriptor_;
    std::uint64_t begin_;
    std::string block_;
};

FileBytes PayloadOf(SystemCalls& calls, const LeftJournal& journal) {
    return {calls, journal.file.Number(), journal.header.payloadOffset};
}

std::u16string LocalTime(std::int64_t nanoseconds) {
    constexpr std::int64_t kPerSecond = 1'000'000'000;
    const std::time_t seconds = nanoseconds / kPerSecond;
    std::tm parts{};
    ::localtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    return TextFromUtf8({text.data(), length});
}

std::string_view NameOf(std::string_view path) {
    return path.substr(path.find_last_of('/') + 1);
}

std::u16string Reason(int error) {
    return TextFromUtf8(std::generic_category().message(error));
}

/// Whether the payload is what was written. Throws Failure when it cannot be read.
bool PayloadIsWhole(SystemCalls& calls, const LeftJournal& journal) {
    const JournalRecord& record = journal.header.record;
    FileBytes payload = PayloadOf(calls, journal);
    Checksum checksum;
    for (std::uint64_t done = 0; done < record.payloadSize;) {
        const std::uint64_t left = record.payloadSize - done;
        std::string_view bytes;
        const int error = payload.Show(done, std::min<std::uint64_t>(left, kCopyBlock), bytes);
        if (error == kEnded) {
            return false;
        }
        if (error != 0) {
            throw FileFailure(u"Could not read the journal",
                              TextFromNativeName(journal.file.Path()), error);
        }
        checksum.Add(bytes);
        done += bytes.size();
    }
    return checksum.Value() == record.payloadChecksum;
}

/// Whether the file is as the record wants it. Throws Failure when that cannot be told.
bool HasPayloadAlready(SystemCalls& calls, const LeftJournal& journal, ByteSource& present,
                       const FileStatus& status) {
    const JournalRecord& record = journal.header.record;
    if (status.size != record.base + record.payloadSize) {
        return false;
    }
    FileBytes payload = PayloadOf(calls, journal);
    for (std::uint64_t done = 0; done < record.payloadSize;) {
        const std::uint64_t left = record.payloadSize - done;
        std::string_view wanted;
        std::string_view there;
        int error = payload.Show(done, std::min<std::uint64_t>(left, kCopyBlock), wanted);
        if (error == 0) {
            error = present.Show(record.base + done, wanted.size(), there);
        }
        if (error != 0 && error != kEnded) {
            throw FileFailure(u"Could not read the file", TextFromNativeName(record.path), error);
        }
        if (wanted != there) {
            return false;
        }
        done += wanted.size();
    }
    return true;
}

/// Whether an error says for certain that a path leads nowhere. Any other may pass.
bool IsGone(int error) {
    return error == ENOENT || error == ENOTDIR || error == ELOOP;
}

} // namespace

void Recovery::Run() {
    machine_ = NameOfMachine();
    std::vector<std::string> paths;
    FailureOf([&] { paths = JournalsIn(calls_, folders_); });
    for (const std::string& path : paths) {
        FailureOf([&] { LookAt(path); });
    }
    std::sort(waiting_.begin(), waiting_.end(),
              [](const Waiting& a, const Waiting& b) { return a.begun < b.begun; });
    // One is open at a time: there may be more of them than a process may have files.
    for (const Waiting& waiting : waiting_) {
        const auto failure = FailureOf([&] {
            std::optional<LeftJournal> journal = TakeOverJournal(calls_, waiting.path);
            if (journal && journal->IsPending(machine_)) {
                Settle(*journal);
            }
        });
        if (failure) {
            Tell(Concat(*failure,
                        u"\r\n\r\nThe program was ended while it was writing that file. This will "
                        u"be tried again at its next start."));
        }
    }
}

void Recovery::LookAt(const std::string& path) {
    std::optional<LeftJournal> journal = TakeOverJournal(calls_, path);
    if (!journal) {
        return;
    }
    if (journal->header.state == HeaderState::None) {
        journal->file.Remove();
    } else if (journal->header.state == HeaderState::Damaged) {
        KeepDamaged(journal->file);
    } else if (journal->IsPending(machine_)) {
        waiting_.push_back({journal->header.record.begun, path});
    }
}

void Recovery::Settle(LeftJournal& journal) {
    if (journal.header.record.kind == RecordKind::Creation) {
        RemovePassingFile(journal.header.record);
        journal.file.Remove();
    } else {
        SettleReplacement(journal);
    }
}

void Recovery::SettleReplacement(LeftJournal& journal) {
    const JournalRecord& record = journal.header.record;
    const std::u16string path = TextFromNativeName(record.path);
    FileStatus status;
    const int error = calls_.StatusOfTarget(record.path, status) == 0 ? 0 : errno;
    if (error != 0 && !IsGone(error)) {
        throw FileFailure(u"Could not look at the file", path, error);
    }
    const bool same = error == 0 && status.IsRegular() && status.SameFileAs(record.target);
    if (!PayloadIsWhole(calls_, journal)) {
        if (same && status.SameContentsAs(record.target)) {
            journal.file.Remove(); // the program was killed before it touched the file
        } else {
            KeepDamaged(journal.file);
        }
        return;
    }
    if (error != 0) {
        KeepPayload(journal, Concat(u"There is no such file any more (", Reason(error), u")."));
        return;
    }
    if (!same || status.size < record.base) {
        KeepPayload(journal, u"There is another file in its place now.");
        return;
    }
    const Descriptor present(
        calls_, calls_.Open(record.path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, 0));
    if (!present.IsOpen()) {
        throw FileFailure(u"Could not open the file", path, errno);
    }
    FileBytes bytes(calls_, present.Number());
    if (HasPayloadAlready(calls_, journal, bytes, status)) {
        Finish(journal, present, status);
    } else if (UserWants(record, status)) {
        Complete(journal, present, status);
    } else {
        KeepPayload(journal, u"The file itself has been left as it is.");
    }
}

bool Recovery::UserWants(const JournalRecord& record, const FileStatus& status) {
    return prompts_.ShowMessage(
               Concat(
                   u"The program was ended while it was writing this file, which may hold old "
                   u"and new text now:\r\n\r\n",
                   TextFromNativeName(record.path), u"\r\n\r\nThe writing began: ",
                   LocalTime(record.begun), u"\r\nThe file was last changed: ",
                   LocalTime(status.modified),
                   u"\r\n\r\nComplete the file now?\r\n\r\nYes: the file gets its new text; a copy "
                   u"of what it holds at present is kept.\r\nNo: the file stays as it is; a copy "
                   u"of "
                   u"its new text is kept.\r\n\r\nThe copy goes into this folder:\r\n",
                   TextFromNativeName(KeptFolder(folders_.front()))),
               BoxStyle::Question) == Answer::Yes;
}

void Recovery::Complete(LeftJournal& journal, const Descriptor& present, const FileStatus& status) {
    constexpr std::u16string_view kCouldNotComplete = u"Could not complete the file";
    const JournalRecord& record = journal.header.record;
    const std::u16string path = TextFromNativeName(record.path);
    const OpenedInPlace opened = OpenInPlace(calls_, record.path);
    Descriptor target(calls_, opened.descriptor);
    if (opened.error != 0) {
        throw OpenFailure(kCouldNotComplete, path, opened);
    }
    if (const int error = LockForWriting(calls_, target.Number())) {
        throw LockFailure(kCouldNotComplete, path, error);
    }
    InPlaceJob job;
    if (calls_.Status(target.Number(), job.old) != 0 || !job.old.SameFileAs(status) ||
        !job.old.SameContentsAs(status)) {
        throw FileFailure(kCouldNotComplete, path, u"Another program has changed it meanwhile");
    }
    std::string place;
    if (status.size > 0) {
        FileBytes bytes(calls_, present.Number());
        place = KeepCopy(calls_, folders_, "old", NameOf(record.path), bytes, status.size);
    }
    job.descriptor = target.Number();
    job.old.mode = ModeToGiveBack(job.old.mode, record.target.mode);
    job.base = record.base;
    job.size = record.payloadSize;
    FileBytes payload = PayloadOf(calls_, journal);
    InPlaceResult result = PutInPlace(calls_, job, payload);
    if (target.Close() != 0 && errno != EINTR && result.error == 0) {
        result.error = errno;
    }
    if (result.error != 0) {
        throw FileFailure(kCouldNotComplete, path, result.error);
    }
    journal.file.Remove();
    if (!place.empty() &&
        !place.starts_with(KeptFolder(folders_.front()))) { // which the question has named
        Tell(Concat(u"What the file \"", path, u"\" held before has been kept here:\r\n",
                    TextFromNativeName(place)));
    }
}

/// The file has its new bytes; only its set-id bits may still be missing.
void Recovery::Finish(LeftJournal& journal, const Descriptor& present, const FileStatus& status) {
    const mode_t mode = ModeToGiveBack(status.mode, journal.header.record.target.mode);
    if (mode != status.mode) {
        RestoreSetIdBits(calls_, present.Number(), mode);
    }
    journal.file.Remove();
}

void Recovery::KeepPayload(LeftJournal& journal, std::u16string_view why) {
    const JournalRecord& record = journal.header.record;
    FileBytes payload = PayloadOf(calls_, journal);
    const std::string place =
        KeepCopy(calls_, folders_, "new", NameOf(record.path), payload, record.payloadSize);
    journal.file.Remove();
    Tell(Concat(u"The program was ended while it was writing this file:\r\n\r\n",
                TextFromNativeName(record.path), u"\r\n\r\n", why,
                u" Its new text has been kept here:\r\n", TextFromNativeName(place)));
}

void Recovery::KeepDamaged(JournalFile& journal) {
    const std::string folder =
        KeptFolder(journal.Path().substr(0, journal.Path().find_last_of('/')));
    const std::string place = folder + "/damaged-" + RandomHex(8);
    if (PrepareFolder(calls_, folder) == 0 && calls_.RenameToNew(journal.Path(), place) == 0) {
        Tell(Concat(u"The record of a file that the program was ended in the middle of is damaged "
                    u"and of no use to it. It has been kept here:\r\n",
                    TextFromNativeName(place)));
    }
}

void Recovery::RemovePassingFile(const JournalRecord& record) {
    constexpr std::u16string_view kCouldNotRemove = u"Could not remove the unfinished file";
    const std::u16string path = TextFromNativeName(record.path);
    FileStatus status;
    if (!IsPassingName(NameOf(record.path))) {
        return;
    }
    if (calls_.StatusOfName(record.path, status) != 0) {
        if (!IsGone(errno)) {
            throw FileFailure(kCouldNotRemove, path, errno);
        }
        return;
    }
    // Before its number could be recorded, nothing was written into it.
    const bool isOurs =
        status.IsRegular() && status.owner == ::geteuid() &&
        (record.target.inode != 0 ? status.SameFileAs(record.target) : status.size == 0);
    if (isOurs && calls_.Unlink(record.path) != 0 && errno != ENOENT) {
        throw FileFailure(kCouldNotRemove, path, errno);
    }
}

void Recovery::Tell(std::u16string_view text) {
    prompts_.ShowMessage(text, BoxStyle::Exclamation);
}

} // namespace vexmarrow

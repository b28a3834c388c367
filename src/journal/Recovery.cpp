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
#include <filesystem>
#include <memory>
#include <system_error>
#include <unistd.h>

namespace vexmarrow {
namespace {

/// The bytes of an open file from an offset on.
class FileBytes final : public ByteSource {
public:
    FileBytes(SystemCalls& calls, int descriptor)
        : calls_(calls), descriptor_(descriptor), block_(kCopyBlock, '\0') {}

    int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) override {
        std::size_t got = 0;
        const int error = ReadWhole(calls_, descriptor_, block_.data(),
                                    std::min(most, block_.size()), offset, got);
        bytes = std::string_view(block_).substr(0, got);
        return error == 0 && got == 0 ? EIO : error; // somebody has cut the file
    }

private:
    SystemCalls& calls_;
    int descriptor_;
    std::string block_;
};

/// The payload of a record.
class PayloadBytes final : public ByteSource {
public:
    PayloadBytes(JournalFile& journal, std::uint64_t offset)
        : journal_(journal), offset_(offset), block_(kCopyBlock, '\0') {}

    int Show(std::uint64_t offset, std::size_t most, std::string_view& bytes) override {
        std::size_t got = 0;
        const int error =
            journal_.Read(offset_ + offset, block_.data(), std::min(most, block_.size()), got);
        bytes = std::string_view(block_).substr(0, got);
        return error == 0 && got == 0 ? EIO : error;
    }

private:
    JournalFile& journal_;
    std::uint64_t offset_;
    std::string block_;
};

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

} // namespace

void Recovery::Run() {
    machine_ = NameOfMachine();
    std::vector<Found> pending;
    FailureOf([&] { pending = FindPending(); });
    for (Found& found : pending) {
        if (const auto failure = FailureOf([&] { Settle(found); })) {
            Tell(Concat(*failure, u"\r\n\r\nThe new text of \"",
                        TextFromNativeName(found.record.path),
                        u"\" stays where it is until the next start of the program."));
        }
    }
}

std::vector<Recovery::Found> Recovery::FindPending() {
    std::vector<Found> pending;
    for (const std::string& folder : folders_) {
        FileStatus status;
        if (calls_.StatusOfName(folder, status) != 0 || !status.IsFolder() ||
            status.owner != ::geteuid()) {
            continue;
        }
        std::vector<std::string> names;
        std::error_code error;
        for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error)) {
            names.push_back(entry->path().filename().native());
        }
        for (const std::string& name : names) {
            if (IsJournalName(name)) {
                if (auto journal = JournalFile::TakeOver(
                        calls_, std::string(folder).append("/").append(name))) {
                    LookAt(std::move(*journal), pending);
                }
            }
        }
    }
    std::sort(pending.begin(), pending.end(),
              [](const Found& a, const Found& b) { return a.record.begun < b.record.begun; });
    return pending;
}

void Recovery::LookAt(JournalFile journal, std::vector<Found>& pending) {
    std::string first(kLongestHeader, '\0');
    std::size_t got = 0;
    if (journal.Read(0, first.data(), first.size(), got) != 0) {
        return; // it may be readable at another time
    }
    const ParsedHeader header = ParseHeader(std::string_view(first).substr(0, got));
    if (header.state == HeaderState::None) {
        journal.Remove();
    } else if (header.state == HeaderState::Damaged) {
        KeepDamaged(journal);
    } else if (header.state == HeaderState::Whole && header.record.machine == machine_) {
        pending.push_back({std::move(journal), header.record, header.payloadOffset});
    }
}

void Recovery::Settle(Found& found) {
    const JournalRecord& record = found.record;
    if (record.kind == RecordKind::Creation) {
        RemovePassingFile(record);
        found.journal.Remove();
        return;
    }
    Descriptor present(calls_,
                       calls_.Open(record.path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, 0));
    const int error = present.IsOpen() ? 0 : errno;
    FileStatus status;
    const bool same = present.IsOpen() && calls_.Status(present.Number(), status) == 0 &&
                      status.IsRegular() && status.SameFileAs(record.target);
    if (!PayloadIsWhole(found)) {
        if (same && status.SameContentsAs(record.target)) {
            found.journal.Remove(); // the program was killed before it touched the file
        } else {
            KeepDamaged(found.journal);
        }
    } else if (error != 0) {
        KeepPayload(found, Concat(u"That file cannot be opened any more: ", Reason(error), u"."));
    } else if (!same || status.size < record.base) {
        KeepPayload(found, u"There is another file in its place now.");
    } else if (HasPayloadAlready(found, present, status)) {
        Finish(found, present, status);
    } else if (UserWants(record, status)) {
        Complete(found, present, status);
    } else {
        KeepPayload(found, u"The file itself has been left as it is.");
    }
}

bool Recovery::PayloadIsWhole(Found& found) {
    PayloadBytes payload(found.journal, found.payloadOffset);
    Checksum checksum;
    for (std::uint64_t done = 0; done < found.record.payloadSize;) {
        const std::uint64_t left = found.record.payloadSize - done;
        std::string_view bytes;
        if (payload.Show(done, std::min<std::uint64_t>(left, kCopyBlock), bytes) != 0) {
            return false;
        }
        checksum.Add(bytes);
        done += bytes.size();
    }
    return checksum.Value() == found.record.payloadChecksum;
}

bool Recovery::HasPayloadAlready(Found& found, const Descriptor& file, const FileStatus& status) {
    const JournalRecord& record = found.record;
    if (status.size != record.base + record.payloadSize) {
        return false;
    }
    PayloadBytes payload(found.journal, found.payloadOffset);
    FileBytes present(calls_, file.Number());
    for (std::uint64_t done = 0; done < record.payloadSize;) {
        const std::uint64_t left = record.payloadSize - done;
        std::string_view wanted;
        std::string_view there;
        if (payload.Show(done, std::min<std::uint64_t>(left, kCopyBlock), wanted) != 0 ||
            present.Show(record.base + done, wanted.size(), there) != 0 || wanted != there) {
            return false;
        }
        done += wanted.size();
    }
    return true;
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
                   u"of "
                   u"what it holds at present is kept.\r\nNo: the file stays as it is; a copy of "
                   u"its new text is kept.\r\n\r\nThe copy goes into this folder:\r\n",
                   TextFromNativeName(KeptFolder(folders_.front()))),
               BoxStyle::Question) == Answer::Yes;
}

void Recovery::Complete(Found& found, const Descriptor& present, const FileStatus& status) {
    const JournalRecord& record = found.record;
    const std::u16string path = TextFromNativeName(record.path);
    InPlaceJob job;
    int error = 0;
    Descriptor target(calls_, OpenInPlace(calls_, record.path, job.old, error));
    if (error != 0) {
        throw error == EWOULDBLOCK
            ? FileFailure(u"Could not complete the file", path, u"It is locked by another program")
            : FileFailure(u"Could not complete the file", path, error);
    }
    if (!job.old.SameFileAs(status) || !job.old.SameContentsAs(status)) {
        throw FileFailure(u"Could not complete the file", path,
                          u"Another program has changed it meanwhile");
    }
    if (status.size > 0) {
        FileBytes bytes(calls_, present.Number());
        KeepCopy(calls_, folders_, "old", NameOf(record.path), bytes, status.size);
    }
    job.descriptor = target.Number();
    job.old.mode = record.target.mode; // the killed program may have lost the set-id bits
    job.base = record.base;
    job.size = record.payloadSize;
    PayloadBytes payload(found.journal, found.payloadOffset);
    InPlaceResult result = PutInPlace(calls_, job, payload);
    if (target.Close() != 0 && errno != EINTR && result.error == 0) {
        result.error = errno;
    }
    if (result.error != 0) {
        throw FileFailure(u"Could not complete the file", path, result.error);
    }
    found.journal.Remove();
}

/// The file has its new bytes; only its set-id bits may still be missing.
void Recovery::Finish(Found& found, const Descriptor& present, const FileStatus& status) {
    constexpr mode_t kSetIdBits = S_ISUID | S_ISGID;
    const mode_t mode = found.record.target.mode;
    if (status.mode != mode && (status.mode | (mode & kSetIdBits)) == mode) {
        RestoreSetIdBits(calls_, present.Number(), mode);
    }
    found.journal.Remove();
}

void Recovery::KeepPayload(Found& found, std::u16string_view why) {
    const JournalRecord& record = found.record;
    PayloadBytes payload(found.journal, found.payloadOffset);
    const std::string place =
        KeepCopy(calls_, folders_, "new", NameOf(record.path), payload, record.payloadSize);
    found.journal.Remove();
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
    FileStatus status;
    if (!IsPassingName(NameOf(record.path)) || calls_.StatusOfName(record.path, status) != 0 ||
        !status.IsRegular() || status.owner != ::geteuid()) {
        return;
    }
    // Before its number could be recorded, nothing was written into it.
    const bool isOurs =
        record.target.inode != 0 ? status.SameFileAs(record.target) : status.size == 0;
    if (isOurs) {
        calls_.Unlink(record.path);
    }
}

void Recovery::Tell(std::u16string_view text) {
    prompts_.ShowMessage(text, BoxStyle::Exclamation);
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/Recovery.h"

#include "fuzz/Fuzz.h"
#include "safety/KeptCopies.h"
#include "safety/LogFile.h"
#include "safety/LogFolders.h"
#include "safety/TakingBack.h"
#include "shell/Trap.h"
#include "support/Doubles.h"
#include "support/Faults.h"
#include "support/TestFolder.h"
#include "textio/ByteSource.h"

#include <cstdlib>
#include <functional>
#include <map>
#include <set>
#include <unistd.h>

// What a log may do to users' files. It says anything under right checksums, or is damaged; the
// files hold old, new and other texts; a system call may fail. Whatever comes of that, a file
// changes only as its records and the user's answers allow, and nothing that is open is forgotten.

namespace vexmarrow::fuzz {
namespace {

constexpr std::string_view kPassing = "cards/.vexmarrow-0123456789abcdef0123456789abcdef";
constexpr std::string_view kNames[] = {"cards/a",    "cards/b",   "cards/a", kPassing,
                                       "cards/none", "missing/a", "cards",   "cards/b"};

using Files = std::map<std::string, std::string>; // what they hold, by path

/// Thousands of small files are made and removed: in memory, where there is such a place.
const bool kInMemory = ::access("/dev/shm", W_OK) == 0 && ::setenv("TMPDIR", "/dev/shm", 0) == 0;

bool IsOld(const std::string& bytes, const PlacedRecord& placed) {
    return bytes.size() == placed.record.old.size && ChecksumOf(bytes) == placed.record.checksum;
}
bool IsNew(const std::string& bytes, const PlacedRecord& placed) {
    return placed.written && bytes.size() == placed.written->size &&
           ChecksumOf(bytes) == placed.written->checksum;
}
bool IsReplacement(const PlacedRecord& placed) {
    return placed.record.kind == RecordKind::Replacement;
}

/// A few files and a log, all as the input says.
class Scene {
public:
    explicit Scene(Input& input) {
        std::string texts[4];
        const std::string_view prefix = input.Bytes(input.Byte() % 8);
        for (std::string& text : texts) {
            text.append(prefix).append(input.Bytes(input.Byte() % 8));
        }
        for (const std::string_view name : {kNames[0], kNames[1], kPassing}) {
            const std::size_t which = input.Byte();
            folder_.Write(name, texts[which % 4].substr(0, which / 4 % 8) + texts[which / 32 % 4]);
        }
        int error = PrepareFolder(calls_, folders_[0]);
        std::optional<LogFile> log = LogFile::Make(calls_, log_, true, error);
        Require(log.has_value(), "a log can be made");
        std::uint64_t end = LogFile::kFirstRecord;
        for (int left = input.Byte() % 8; left > 0; --left) {
            const std::string& old = texts[input.Byte() % 4];
            PlacedRecord placed = MakeRecord(input, old, texts[input.Byte() % 4]);
            placed.at = end;
            std::string bytes;
            EncodeRecord(placed, log->Header().salt, bytes);
            bytes += old.substr(std::min<std::size_t>(placed.record.keptFrom, old.size()));
            log->Write(end, bytes);
            end += bytes.size();
        }
        // Some bytes of it are anything; or it ends there.
        const std::size_t from = end - std::min(std::size_t{4} * input.Byte(), end);
        const std::size_t ways = input.Byte();
        log->Write(from < LogFile::kFirstRecord ? 0 : from, input.Bytes(ways / 2));
        calls_.Truncate(log->Number(), ways == 1 ? from : end);
    }

    /// Has the log worked on, as the input says, and looks at what has become of the files.
    void Step(Input& input) {
        constexpr Answer kAnswers[] = {Answer::Yes, Answer::Later, Answer::No};
        const std::optional<LogFile> log = LogFile::LookAt(calls_, log_);
        records_ = log ? log->Records() : std::vector<PlacedRecord>();
        answers_.clear();
        test::ScriptedPrompts prompts;
        prompts.whenShown = [&](const test::Box& box) {
            prompts.answers = {kAnswers[box.style == BoxStyle::OrLater ? input.Byte() % 3 : 1]};
            for (const PlacedRecord& placed : records_) {
                const std::string& path = placed.record.path;
                if (prompts.answers.front() != Answer::Later &&
                    box.text.find(u"\n" + TextFromNativeName(path) + u"\r") != box.text.npos) {
                    answers_[path].insert(prompts.answers.front());
                }
            }
        };
        takesBack_ = input.Byte() % 2 != 0;
        const int failing = input.Byte();
        const int event = static_cast<int>(Calls::Event::Fail) + input.Byte() % 3;
        const Files before = Look("cards");
        const Files kept = Look("state/kept");
        calls_.AtCall(failing == 0 ? 0 : calls_.allCalls + failing,
                      static_cast<Calls::Event>(event));
        if (takesBack_) {
            FailureOf([&] { TakeBack(failing == 0); });
        } else {
            Recovery(calls_, folders_, prompts).Run();
        }
        calls_.AtCall(0, Calls::Event::Fail);
        const Files after = Look("cards");
        for (const auto& [path, bytes] : after) {
            Require(before.count(path) == 1, "no file appears among the user's");
        }
        for (const auto& [path, bytes] : before) {
            CheckFile(path, bytes, after.count(path) != 0 ? &after.at(path) : nullptr);
        }
        Require(!answers_.empty() || Look("state/kept") == kept, "nothing is kept aside unasked");
        CheckOpen(before);
    }

private:
    using Calls = test::FaultySystemCalls;

    PlacedRecord MakeRecord(Input& input, const std::string& old, const std::string& text) {
        PlacedRecord placed;
        RunRecord& record = placed.record;
        const std::size_t names = input.Byte();
        const std::size_t kinds = input.Byte();
        record.path = folder_.Native(kNames[names % 8]);
        calls_.StatusOfTarget(record.path, record.old);
        record.old.born += kinds / 2 % 2 == 0 ? 0 : 1; // another one, perhaps
        if (kinds % 2 != 0) {
            record.kind = RecordKind::Creation;
            record.passingName = names / 64 % 2 != 0 ? folder_.Native(kNames[names / 8 % 8]) : "";
        }
        if (kinds / 16 % 4 != 0) {
            placed.written = WrittenText{text.size(), ChecksumOf(text), record.old};
        }
        placed.state = static_cast<RecordState>(1 + kinds / 4 % 4); // one of them is none
        record.old.size = old.size();
        record.old.modified = input.Byte();
        record.keptFrom = input.Byte() % (old.size() + 1);
        record.checksum = ChecksumOf(old);
        if (kinds / 64 == 1) { // what only a fault of the disk brings about
            ++record.checksum;
        } else if (kinds / 64 == 2) {
            record.old.size <<= names / 8;
            record.keptFrom = record.old.size / 2;
        }
        return placed;
    }

    Files Look(const std::string& folder) const {
        Files files;
        for (const std::string& name :
             folder_.Exists(folder) ? folder_.Names(folder) : std::vector<std::string>()) {
            files[folder_.Native(folder + "/" + name)] = folder_.Read(folder + "/" + name);
        }
        return files;
    }

    void TakeBack(bool nothingFails) {
        TakingBack takingBack(calls_, folders_);
        if (const std::optional<LastRun> last = takingBack.Last()) {
            const auto left = takingBack.TakeBack(*last, [](std::size_t, std::size_t) {});
            Require(!left.empty() || !nothingFails || !takingBack.Last(), "a run is back");
        }
    }

    bool IsOpen(const PlacedRecord& placed) {
        const auto log = LogFile::LookAt(calls_, log_);
        const auto now = log ? log->RecordAt(placed.at) : std::nullopt;
        return now && now->state == RecordState::Open;
    }

    void CheckFile(const std::string& path, const std::string& bytes, const std::string* now) {
        const auto any = [&](const auto& condition) {
            return std::any_of(records_.begin(), records_.end(), [&](const PlacedRecord& placed) {
                return placed.record.path == path && placed.state != RecordState::Closed &&
                       condition(placed);
            });
        };
        const auto isNew = [&](const PlacedRecord& placed) { return IsNew(bytes, placed); };
        if (now == nullptr) {
            const auto isPassing = [&](const PlacedRecord& placed) {
                return placed.record.passingName == path && placed.state == RecordState::Open;
            };
            Require(takesBack_ ? any(isNew) && any(std::not_fn(IsReplacement))
                               : std::any_of(records_.begin(), records_.end(), isPassing),
                    "what goes was made by a run");
        } else if (*now != bytes) {
            Require(takesBack_ ? any(isNew) : answers_[path].count(Answer::Yes) != 0,
                    "what changes holds a run's text, or the user agrees");
            Require(any([&](const PlacedRecord& placed) {
                        return IsReplacement(placed) && (IsOld(*now, placed) || IsOpen(placed));
                    }),
                    "it has its old text then, or waits");
            const Files kept = Look("state/kept");
            Require(takesBack_ || bytes.empty() ||
                        std::any_of(kept.begin(), kept.end(),
                                    [&](const auto& file) { return file.second == bytes; }),
                    "what it held is kept aside");
        }
    }

    /// Of several records of a file, the last one is the first to be worked on.
    void CheckOpen(const Files& before) {
        std::set<std::string> seen;
        const std::vector<PlacedRecord> backwards(records_.rbegin(), records_.rend());
        for (const PlacedRecord& placed : backwards) {
            const auto file = before.find(placed.record.path);
            if (placed.state != RecordState::Closed && seen.insert(placed.record.path).second &&
                placed.state == RecordState::Open && IsReplacement(placed) &&
                (file == before.end() ||
                 (!IsOld(file->second, placed) && !IsNew(file->second, placed))) &&
                answers_.count(placed.record.path) == 0) {
                Require(IsOpen(placed), "what is open stays so until the user has answered");
            }
        }
    }

    test::TestFolder folder_;
    Calls calls_;
    const std::vector<std::string> folders_{folder_.Native("state")};
    const std::string log_ = folders_[0] + "/" + LogName(1);
    std::vector<PlacedRecord> records_;
    bool takesBack_ = false;
    std::map<std::string, std::set<Answer>> answers_; // but Later, by path
};

} // namespace

void TryInput(Input input) {
    Scene scene(input);
    for (int steps = 0; steps < 3; ++steps) {
        scene.Step(input);
    }
}

} // namespace vexmarrow::fuzz

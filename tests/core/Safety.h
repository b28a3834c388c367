// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/Core.h"
#include "safety/KeptCopies.h"
#include "safety/LogFile.h"
#include "safety/Recovery.h"
#include "safety/RunUndo.h"
#include "textio/InputFile.h"
#include "textio/OpenedFile.h"

namespace vexmarrow::test {

/// One way of writing the file "f".
struct Write {
    const char* name;
    std::string old; ///< or kNoFile
    std::string text;
    bool readsItself = false;     ///< the text is made from the file's old text
    std::string first = kNoFile;  ///< is written before `text`, for a file that is listed twice
    bool hasNamelessFiles = true; ///< the file system has files without a name
};

/// A folder with files, which programs write and are interrupted, and a state folder for their
/// logs.
struct Safety : testing::Test {
    using Event = FaultySystemCalls::Event;

    static constexpr std::int64_t kOldDate = 1'000'000'000'123'456'789;

    TestFolder folder;
    TestFolder state;
    ScriptedPrompts prompts;
    EncodingFlags flags;
    AnsiCodePage ansi{u"windows-1252"};

    std::vector<std::string> Logs() const { return {state.Native("a"), state.Native("b")}; }

    void WriteOld(const std::string& name, const std::string& text) const {
        folder.Write(name, text);
        SetDate(name, kOldDate);
    }
    void SetDate(const std::string& name, std::int64_t date) const {
        SystemCalls calls;
        calls.SetModified(OpenToRead(calls, folder.Native(name)).file.Number(), date);
    }
    std::int64_t DateOf(const std::string& name) const {
        SystemCalls calls;
        FileStatus status;
        calls.StatusOfTarget(folder.Native(name), status);
        return status.modified;
    }
    /// Sets up the folder for a write, and removes everything from an earlier one.
    void Prepare(const std::string& old) const {
        folder.Clear();
        state.Clear();
        if (old != kNoFile) {
            WriteOld("f", old);
        }
    }
    std::string Content() const { return folder.Exists("f") ? folder.Read("f") : kNoFile; }

    /// Writes a file as the program does, from its own text if that is wanted. Returns the reason
    /// of a failure, or the empty text.
    std::string Put(SystemCalls& calls, FileWriter& writer, const std::string& name,
                    const std::string& text, bool itself = false) const {
        try {
            std::optional<InputFile> source;
            const std::string old = itself ? folder.Read(name) : "";
            if (itself) {
                source.emplace(calls, folder.Path(name), InputFile::Use::ReadAndWrite);
            }
            const auto file = writer.Begin(folder.Path(name), source ? &*source : nullptr);
            std::size_t done = 0;
            std::string read;
            const auto append = [&](std::size_t upTo) {
                file->Append(std::string_view(text).substr(done, upTo - done));
                done = upTo;
            };
            for (std::string_view part; source && !(part = source->Peek(65536)).empty();) {
                read += part;
                source->Skip(part.size());
                append(std::min(text.size(), text.size() * read.size() / old.size()));
            }
            if (read != old) {
                throw Failure(u"It was not its old text that was read");
            }
            append(done + (text.size() - done) / 2);
            append(text.size());
            file->Seal();
            if (source) {
                source->CheckUnchanged();
            }
            file->Commit();
            return {};
        } catch (const Failure& failure) {
            return NativeName(failure.Description());
        }
    }
    std::string Do(const Write& write, FaultySystemCalls& calls, FileWriter& writer) const {
        calls.lacksNamelessFiles = !write.hasNamelessFiles;
        const std::string failure =
            write.first == kNoFile ? "" : Put(calls, writer, "f", write.first, write.readsItself);
        return failure + Put(calls, writer, "f", write.text, write.readsItself);
    }
    std::string Do(const Write& write, FaultySystemCalls& calls) const {
        SafeWriter writer(calls, Logs());
        return Do(write, calls, writer);
    }
    /// Returns true if the write was completed.
    bool DoKilledAt(const Write& write, int n, Event event,
                    UndoSupport undo = UndoSupport::Offered) const {
        return InChildProcess([&] {
            FaultySystemCalls calls;
            calls.AtCall(n, event);
            SafeWriter writer(calls, Logs(), undo);
            Do(write, calls, writer);
        });
    }

    /// A program writes kWhole into files that hold kOld. It is killed while it writes the last
    /// one, which then holds kMixture.
    static constexpr const char *kOld = "0123456789", *kWhole = "newnewnewnewnew",
                                *kMixture = "newn456789";
    void LeaveMixture(const Strings& names) const {
        EXPECT_FALSE(InChildProcess([&] {
            FaultySystemCalls calls;
            calls.mostAtOnce = 4;
            calls.beforeCall = [&](Calls::Kind) {
                if (folder.Read(names.back()) == kMixture) {
                    calls.AtCall(calls.allCalls + 1, Event::Kill);
                }
            };
            SafeWriter writer(calls, Logs());
            for (const std::string& name : names) {
                Put(calls, writer, name, kWhole);
            }
        }));
    }

    /// Starts the program again. Returns the number of boxes that it showed.
    std::size_t Recover(FaultySystemCalls& calls, Answer answer) {
        prompts.boxes.clear();
        prompts.answers.assign(99, answer);
        Recovery(calls, Logs(), prompts).Run();
        return prompts.boxes.size();
    }
    std::size_t Recover(Answer answer) {
        FaultySystemCalls calls;
        const std::size_t boxes = Recover(calls, answer);
        EXPECT_EQ(calls.openFiles, 0);
        return boxes;
    }

    /// Undoes the last run, if there is one. Returns the files that were left alone, and why.
    Strings TakeBack(FaultySystemCalls& calls) const {
        RunUndo undo(calls, Logs());
        Strings names;
        try {
            const std::optional<LastRun> last = undo.FindLastRun();
            if (last && last->CanBeUndone()) {
                for (const UndoProblem& left : undo.Undo(*last, [](auto, auto) {})) {
                    names.push_back(left.path.substr(folder.Native().size() + 1) + ": " +
                                    NativeName(left.why));
                }
            }
        } catch (const Failure& failure) {
            names.push_back(NativeName(failure.Description()));
        }
        return names;
    }
    Strings TakeBack() const {
        FaultySystemCalls calls;
        Strings names = TakeBack(calls);
        EXPECT_EQ(calls.openFiles, 0);
        return names;
    }

    /// The names in a folder of the state folder that contain a certain part.
    Strings Kept(const std::string& subfolder, const std::string& part = {}) const {
        Strings names;
        if (std::filesystem::is_directory(state.Native(subfolder))) {
            for (const std::string& name : state.Names(subfolder)) {
                if (name != "kept" && name.find(part) != std::string::npos) {
                    names.push_back(subfolder + "/" + name);
                }
            }
        }
        return names;
    }
    /// The states of all records of a log: O, D or C.
    std::string StatesIn(const std::string& name) const {
        SystemCalls calls;
        std::string states;
        if (const auto log = LogFile::LookAt(calls, state.Native(name))) {
            for (const LogRecord& record : log->Records()) {
                states += "?ODC"[static_cast<std::size_t>(record.state)];
            }
        }
        return states;
    }
};

} // namespace vexmarrow::test

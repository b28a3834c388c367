// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/Core.h"
#include "journal/KeptCopies.h"
#include "journal/Recovery.h"
#include "textio/InputFile.h"

namespace vexmarrow::test {

/// One way of writing the file "f".
struct Write {
    std::string old; ///< "-": there is none
    std::string text;
    WriteStart start = WriteStart::Replace;
    bool nameless = true; ///< the file system has files without a name
    bool itself = false;  ///< the text is made from the file's own, which is read first

    std::string Result() const {
        return start == WriteStart::Append && old != "-" ? old + text : text;
    }
};

/// Files in a folder, written by programs that end in every way, and a state folder of their own.
struct Safety : testing::Test {
    using Event = FaultySystemCalls::Event;

    TestFolder folder;
    TestFolder state;
    ScriptedPrompts prompts;
    EncodingFlags flags;
    AnsiCodePage ansi{u"windows-1252"};

    std::vector<std::string> Journals() const { return {state.Native("a"), state.Native("b")}; }

    /// The folder as the write finds it, with nothing left of the one before.
    void Prepare(const Write& write) const {
        for (const std::string& name : folder.Names()) {
            folder.Remove(name);
        }
        for (const std::string& name : state.Names()) {
            state.Remove(name);
        }
        if (write.old != "-") {
            folder.Write("f", write.old);
        }
    }
    std::string Content() const { return folder.Exists("f") ? folder.Read("f") : "-"; }

    /// Writes the file as a program does; the reason of the failure, if there was one.
    std::string Do(const Write& write, FaultySystemCalls& calls) const {
        calls.lacksNamelessFiles = !write.nameless;
        JournaledWriter writer(calls, Journals());
        return Do(write, writer, &calls);
    }
    std::string Do(const Write& write, FileWriter& writer, SystemCalls* calls = nullptr) const {
        try {
            std::optional<InputFile> source;
            if (write.itself) {
                source.emplace(*calls, folder.Path("f"), InputFile::Use::ReadAndWrite);
                source->PeekAll();
            }
            const auto file =
                writer.Begin(folder.Path("f"), write.start, source ? &*source : nullptr);
            const std::size_t half = write.text.size() / 2;
            file->Append(std::string_view(write.text).substr(0, half));
            file->Append(std::string_view(write.text).substr(half));
            if (source) {
                source->CheckUnchanged();
            }
            file->Commit();
            return {};
        } catch (const Failure& failure) {
            return NativeName(failure.Description());
        }
    }

    /// The next start of the program; returns how many boxes it showed.
    std::size_t Recover(FaultySystemCalls& calls, Answer answer) {
        prompts.boxes.clear();
        prompts.answers.assign(99, answer);
        Recovery(calls, Journals(), prompts).Run();
        return prompts.boxes.size();
    }
    std::size_t Recover(Answer answer) {
        FaultySystemCalls calls;
        const std::size_t boxes = Recover(calls, answer);
        EXPECT_EQ(calls.openFiles, 0);
        return boxes;
    }

    /// What is in a folder of the state folder, by the beginning of the names.
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
};

} // namespace vexmarrow::test

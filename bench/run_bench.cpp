// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// Measures the program at work: the real window on the present display, its event loop and its safe
// writer. Only the message boxes are answered automatically, and settings are not saved.
//
//     run_bench fields|values|whole LIST FOLDER FIND REPLACE
//     run_bench sets LIST FOLDER SETS
//         a run over the files that are listed in LIST, into FOLDER or in place ("-"). SETS is a
//         file of find::replace lines in UTF-8. Measures from the click to "Done." and prints
//         seconds, CPU seconds of the user and of the system, and the peak of memory in bytes over
//         that of the window with its list filled
//     run_bench vcards fields|values|whole|sets ...
//         the same with files read as vCards
//     run_bench undo fields|values|whole|sets ...
//         the first run, a sync, and the undoing of the run. Prints the same figures, of the
//         undoing alone, from the click to the last box
//     run_bench list LIST KEEP REMOVE
//         works on a list: loads it, validates it (and lets the odd rows be removed), keeps the
//         rows that contain KEEP, removes those that contain REMOVE, and clears it. Prints a line
//         for each of these: its name, seconds, and the number of rows that are left
//     VEXMARROW_BENCH_PAGE names the code page of these runs. The default is windows-1252.
//     run_bench add FOLDER
//     run_bench drop FOLDER...
//         fills the list with the button for a folder, or by a drop of folders. Prints the seconds
//         until the visible rows are drawn, and the number of rows
//     run_bench start
//         starts like the program. Prints the time at which the window is usable

#include "WindowTiming.h"
#include "app/Application.h"
#include "app/Assembly.h"
#include "app/FileListView.h"
#include "app/Folders.h"
#include "app/LinesEdit.h"
#include "app/WaitingBoxes.h"
#include "support/Doubles.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <malloc.h>
#include <optional>
#include <sys/resource.h>
#include <unistd.h>

namespace vexmarrow::bench {
namespace {

[[noreturn]] void Fail(const std::string& reason) {
    std::fprintf(stderr, "run_bench: %s\n", reason.c_str());
    std::_Exit(1);
}

std::u16string CodePageOfRun() {
    const char* const page = std::getenv("VEXMARROW_BENCH_PAGE");
    return TextFromUtf8(page != nullptr ? page : "windows-1252");
}

/// What the process has used so far.
struct Usage {
    double clock = Now();
    double user = 0;
    double system = 0;
    std::size_t peak = 0; // of resident memory, in bytes

    static Usage SoFar();
};

/// A figure from the process's status, which has them in kilobytes.
std::size_t BytesOfStatus(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return std::stoul(line.substr(name.size() + 1)) * 1024;
        }
    }
    Fail("the system does not tell " + name);
}

Usage Usage::SoFar() {
    Usage usage;
    rusage used{};
    ::getrusage(RUSAGE_SELF, &used);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    usage.user = seconds(used.ru_utime);
    usage.system = seconds(used.ru_stime);
    usage.peak = BytesOfStatus("VmHWM");
    return usage;
}

/// Answers the boxes. Notes what was used when a run or its undoing ends, answers the box about odd
/// rows with Yes as soon as it is on the screen, agrees to undo, and fails at any other box.
class BenchPrompts final : public Prompts {
public:
    explicit BenchPrompts(const QtEventLoop& eventLoop) : real_(eventLoop) {}

    std::optional<Usage> done;
    std::deque<std::u16string> texts; ///< for the input boxes

    Answer ShowMessage(std::u16string_view text, BoxStyle style,
                       std::u16string_view title) override {
        if (text == u"Done." || text.ends_with(u" has been undone.")) {
            done = Usage::SoFar();
            return Answer::Ok;
        }
        if (text.starts_with(u"Undo the run of ")) {
            return Answer::Yes;
        }
        if (style != BoxStyle::Question) {
            Fail("an unexpected box: " + NativeName(text));
        }
        QTimer::singleShot(0, [] {
            QWidget* const box = TopBox();
            WaitUntilUsable(*box);
            box->findChild<QPushButton*>(QStringLiteral("Yes"))->click();
        });
        return real_.ShowMessage(text, style, title);
    }
    std::u16string AskForText(std::u16string_view /*prompt*/,
                              std::u16string_view /*suggestion*/) override {
        return test::NextOf(texts);
    }

private:
    QtPrompts real_;
};

/// The program with other boxes, dialogs and settings.
class Program {
public:
    void Open() {
        form_.emplace(Services{textio_, writer_, setsWriter_, ansi_, prompts, pickers_, settings,
                               fileManager_, eventLoop_, recovery_, LogFoldersOfUser(),
                               ProgramFolder(), u"/"});
        form_->Form_Load();
        form_->show();
        WaitUntilUsable(*form_);
    }
    template <typename Control>
    Control* Find(const char* name) {
        return form_->findChild<Control*>(QString::fromLatin1(name));
    }
    void Press(const char* name) { Find<QAbstractButton>(name)->click(); }
    void LoadList(const char* path) {
        pickers_.files.push_back({TextFromNativeName(path)});
        Press("PushButton9");
    }
    /// Adds the paths of a list file as files chosen in the dialog, which does not yield for each.
    void AddFiles(const char* listFile) {
        std::ifstream file(listFile, std::ios::binary);
        file.ignore(sizeof "\xEF\xBB\xBF" - 1);
        std::vector<std::u16string> choice(1); // the root folder, to which the paths are relative
        for (std::string line; std::getline(file, line, '\r'); file.ignore(1)) {
            choice.push_back(TextFromNativeName(line.substr(1)));
        }
        if (choice.size() == 2) {
            choice = {u'/' + choice.back()};
        }
        pickers_.files.push_back(std::move(choice));
        Press("PushButton13");
    }
    void AddSets(const char* path) {
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);) {
            prompts.texts.push_back(TextFromUtf8(line));
            Press("PushButton7");
        }
    }
    void AddFolder(const char* path) {
        pickers_.folders.push_back(TextFromNativeName(path));
        Press("PushButton3");
    }
    void Drop(const FileListView::Paths& paths) {
        Q_EMIT Find<FileListView>("ListView1")->PathsDropped(paths);
    }
    void CancelAddFiles() { Press("PushButton13"); } // the picker has no choice left
    int Rows() { return Find<QTreeView>("ListView1")->model()->rowCount(); }

    test::MemorySettings settings;

private:
    EncodingFlags flags_;
    AnsiCodePage ansi_{CodePageOfRun()};
    SystemCalls calls_;
    RFTSFSO textio_{calls_, flags_, ansi_};
    SafeWriter writer_{calls_, LogFoldersOfUser()};
    SafeWriter setsWriter_{calls_, LogFoldersOfUser(), UndoSupport::None};
    QtEventLoop eventLoop_;
    test::ScriptedPickers pickers_;
    test::RecordingFileManager fileManager_;

public:
    BenchPrompts prompts{eventLoop_};

private:
    Recovery recovery_{calls_, LogFoldersOfUser(), prompts};
    std::optional<Form1> form_;
};

/// Does the work and prints what it has used. `work` returns the usage at its end.
void Measure(const std::function<Usage()>& work) {
    ::malloc_trim(0); // memory that was needed earlier must not hide what the work needs
    const std::size_t memory = BytesOfStatus("VmRSS");
    if (std::ofstream clear("/proc/self/clear_refs"); !(clear << '5' << std::flush)) {
        Fail("the peak of the memory cannot be reset");
    }
    Usage begun = Usage::SoFar();
    begun.clock = Now();
    const Usage done = work();
    std::printf("%.6f %.6f %.6f %zu\n", done.clock - begun.clock, done.user - begun.user,
                done.system - begun.system, done.peak - std::min(done.peak, memory));
}

/// What is done in addition to a plain run.
struct Besides {
    bool undo = false;
    bool readAsVCards = false;
};

void Run(const std::vector<const char*>& arguments, const Besides& besides) {
    const std::string mode = arguments[0];
    const std::string folder = arguments[2];
    const bool inPlace = folder == "-";
    Program program;
    const auto choose = [&](std::u16string_view option, bool on) {
        program.settings.SaveSetting(option, on ? u"True" : u"False");
    };
    choose(u"Option1", mode == "fields");
    choose(u"Option2", mode == "values");
    choose(u"Option3", mode == "whole" || mode == "sets");
    choose(u"Option4", !inPlace);
    choose(u"Option5", inPlace);
    choose(u"ReadAsVCards", besides.readAsVCards);
    program.settings.SaveSetting(u"TabSel", mode == "sets" ? u"1" : u"0");
    program.settings.SaveSetting(u"Output Folder", TextFromNativeName(folder));
    program.Open();
    program.Find<LinesEdit>("Text1")->SetText(TextFromUtf8(arguments[3]));
    if (mode == "sets") {
        program.AddSets(arguments[3]);
    } else {
        program.Find<LinesEdit>("Text2")->SetText(TextFromUtf8(arguments[4]));
    }
    program.AddFiles(arguments[1]);
    WaitUntilIdle();

    const auto press = [&](const char* name) {
        program.prompts.done.reset();
        program.Press(name);
        if (!program.prompts.done) {
            Fail("the work did not come to its end");
        }
        return *program.prompts.done;
    };
    if (besides.undo) {
        press("PushButton1");
        ::sync();
    }
    Measure([&] { return press(besides.undo ? "UndoLastRun" : "PushButton1"); });
}

void List(const char* path, const char* keep, const char* remove) {
    Program program;
    program.Open();
    const auto time = [&](const char* name, const std::function<void()>& work) {
        const double begun = Now();
        work();
        WaitUntilIdle();
        std::printf("%s %.6f %d\n", name, Now() - begun, program.Rows());
    };
    time("load", [&] { program.LoadList(path); });
    time("validate", [&] { program.CancelAddFiles(); });
    program.prompts.texts = {TextFromUtf8(keep), TextFromUtf8(remove)};
    time("keep", [&] { program.Press("PushButton11"); });
    time("remove", [&] { program.Press("PushButton17"); });
    time("clear", [&] { program.Press("PushButton2"); });
}

void Fill(bool drop, const std::vector<const char*>& folders) {
    Program program;
    program.Open();
    FileListView::Paths paths;
    for (const char* const folder : folders) {
        paths.push_back(TextFromNativeName(folder));
    }
    const double begun = Now();
    if (drop) {
        program.Drop(paths);
    } else {
        program.AddFolder(folders.front());
    }
    WaitUntilIdle();
    std::printf("%.6f %d\n", Now() - begun, program.Rows());
}

/// Starts like the program's main function.
void Start() {
    Assembly program;
    program.Start();
    WaitUntilUsable(program.MainWindow());
    std::printf("%.6f\n", Now());
}

} // namespace
} // namespace vexmarrow::bench

int main(int argc, char** argv) {
    using namespace vexmarrow::bench;
    const vexmarrow::Application application(argc, argv);

    std::vector<const char*> arguments(argv + 1, argv + argc);
    Besides besides;
    std::string command = arguments.empty() ? "" : arguments[0];
    besides.undo = command == "undo";
    besides.readAsVCards = command == "vcards";
    if (besides.undo || besides.readAsVCards) {
        arguments.erase(arguments.begin());
        command = arguments.empty() ? "" : arguments[0];
    }
    if (command == "start") {
        Start();
    } else if (command == "list" && arguments.size() == 4) {
        List(arguments[1], arguments[2], arguments[3]);
    } else if (command == "drop" || (command == "add" && arguments.size() == 2)) {
        Fill(command == "drop", {arguments.begin() + 1, arguments.end()});
    } else if (arguments.size() == (command == "sets" ? 4 : 5)) {
        Run(arguments, besides);
    } else {
        Fail("see the top of run_bench.cpp for the arguments");
    }
    return 0;
}

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace vexmarrow {

class AnsiCodePage;
class FileManager;
class FileWriter;
class Pickers;
class Prompts;
class QtEventLoop;
class RFTSFSO;
class Recovery;
class SettingsStore;

/// What the main window works with. All references must outlive the window.
struct Services {
    RFTSFSO& textio;
    FileWriter& writer;     ///< of results
    FileWriter& setsWriter; ///< of sets files, which cannot be undone
    AnsiCodePage& ansi;
    Prompts& prompts;
    Pickers& pickers;
    SettingsStore& settings;
    FileManager& fileManager;
    QtEventLoop& eventLoop;
    Recovery& recovery;
    std::vector<std::string> logFolders; ///< the folders with the logs of runs
    std::u16string programFolder;        ///< of the program file, without a separator at its end
    std::u16string desktopFolder;        ///< the output folder if the user has never chosen one
};

} // namespace vexmarrow

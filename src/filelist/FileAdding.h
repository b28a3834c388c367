// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace vexmarrow {

class AnsiCodePage;
class EventLoop;
class FileList;
class MousePointer;
class Pickers;
class Prompts;
class SettingsStore;

/// What the buttons do that add files to the list. Each operation traps its own failures, keeps the
/// rows that it had added before one, and ends with ValidateListFiles, whatever the user chose.
class FileAdding {
public:
    FileAdding(FileList& list, Prompts& prompts, Pickers& pickers, SettingsStore& settings,
               EventLoop& eventLoop, MousePointer& pointer, const AnsiCodePage& ansi)
        : list_(list),
          prompts_(prompts),
          pickers_(pickers),
          settings_(settings),
          eventLoop_(eventLoop),
          pointer_(pointer),
          ansi_(ansi) {}

    /// "Add VCF File(s)": adds the files chosen in the dialog.
    void AddFiles();

    /// "Add All VCF File(s) In Folder": adds the "*.vcf" files of the chosen folder and all folders
    /// below it. Files whose name begins with "~", and those that are exactly hidden and archive,
    /// are left out.
    void AddAllFilesInFolder();

private:
    FileList& list_;
    Prompts& prompts_;
    Pickers& pickers_;
    SettingsStore& settings_;
    EventLoop& eventLoop_;
    MousePointer& pointer_;
    const AnsiCodePage& ansi_;
    std::u16string lastFolder_; // as in the setting of that name
};

} // namespace vexmarrow

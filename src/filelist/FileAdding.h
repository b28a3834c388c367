// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"

#include <string>
#include <vector>

namespace vexmarrow {

class FileList;
class RFTSFSO;

/// The ways of adding files to the list. Unless it says otherwise, each operation traps its own
/// failures, keeps the rows that it had added before one, and ends with ValidateListFiles, whatever
/// the user chose.
class FileAdding {
public:
    FileAdding(FileList& list, const Desktop& desktop, RFTSFSO& textio)
        : list_(list), desktop_(desktop), textio_(textio) {}

    /// "Add VCF File(s)": adds the files chosen in the dialog.
    void AddFiles();

    /// "Add All VCF File(s) In Folder": adds the "*.vcf" files of the chosen folder and all folders
    /// below it. Files whose name begins with "~", and those that are exactly hidden and archive,
    /// are left out.
    void AddAllFilesInFolder();

    /// "Load List Of Files From File": adds the paths named in the chosen list files, one a line,
    /// as they stand and whether or not there are such files. Lines of nothing but spaces are left
    /// out. Unlike the others, it does not end with ValidateListFiles. Detects encodings.
    void LoadListFiles();

    /// Adds what was dropped on the list, in the order given: a file as it is, a folder as the
    /// files in it and in all folders below it (the same ones are left out as by
    /// AddAllFilesInFolder, whatever their extension). For each folder, all folders found before it
    /// are searched and listed again, so that files of earlier folders come twice and more. Has no
    /// report of its own: a folder that cannot be listed adds nothing.
    void AddDropped(const std::vector<std::u16string>& paths);

private:
    void LoadListFile(const std::u16string& path);
    void AddFilesOf(const std::vector<std::u16string>& paths);

    FileList& list_;
    Desktop desktop_;
    RFTSFSO& textio_;
    std::u16string lastFolder_; // as in the setting of that name
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"
#include "shell/FolderChoice.h"

#include <string>
#include <vector>

namespace vexmarrow {

class FileList;
class RFTSFSO;

/// Adds files to the list. Unless an operation says otherwise, it traps its own failures, keeps the
/// rows that it has added before a failure, and ends with ValidateListFiles, even if the user
/// cancels a dialog.
class FileAdding {
public:
    FileAdding(FileList& list, const Desktop& desktop, RFTSFSO& textio)
        : list_(list),
          desktop_(desktop),
          textio_(textio),
          inputFolder_(desktop, choices::kLastInputFolder) {}

    /// "Add VCF File(s)": adds the files that the user chooses in a dialog.
    void AddFiles();

    /// "Add All VCF File(s) In Folder": adds the "*.vcf" files of the chosen folder and of all
    /// folders below it. Leaves out files whose name begins with "~", and files that have the
    /// attributes hidden and archive but no other.
    void AddAllFilesInFolder();

    /// "Load List Of Files From File": adds the paths in the chosen list files, one per line. They
    /// are added unchanged, whether or not such files exist. Lines of spaces are left out. Detects
    /// the encoding of a list file. Does not end with ValidateListFiles.
    void LoadListFiles();

    /// Adds dropped files and folders in the order given. A folder adds the files in it and in all
    /// folders below it, with any extension; it leaves out the same files as AddAllFilesInFolder.
    /// With several dropped folders, each new one causes all earlier ones to be listed again, so
    /// their files are added more than once. This is intended. Does not trap failures, but a folder
    /// that cannot be listed just adds nothing.
    void AddDropped(const std::vector<std::u16string>& paths);

private:
    void LoadListFile(const std::u16string& path);
    void AddFilesOf(const std::vector<std::u16string>& paths);

    FileList& list_;
    Desktop desktop_;
    RFTSFSO& textio_;
    FolderChoice inputFolder_;
};

} // namespace vexmarrow

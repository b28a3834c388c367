// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// How a file dialog is prepared.
struct FileDialogRequest {
    std::u16string_view title;
    /// Pairs of caption and pattern, each followed by "|": "VCF Files (*.vcf)|*.vcf|". The
    /// pattern "*.*" stands for every file, with a dot in its name or not.
    std::u16string_view filter;
    /// Whether several files may be chosen at once; saving always names one.
    bool several = true;
};

inline constexpr std::u16string_view kTextFilesFilter =
    u"Text Files (*.txt)|*.txt|All Files (*.*)|*.*|";

/// The desktop's dialogs for choosing files and folders.
class Pickers {
public:
    virtual ~Pickers() = default;

    /// Lets the user choose one or several existing files. Returns nothing on cancel; one element,
    /// the full path, for one file; else the folder followed by the names of the files in it.
    virtual std::vector<std::u16string> OpenFiles(const FileDialogRequest& request) = 0;

    /// Lets the user name a file to write. Returns the path exactly as named (no extension is
    /// added, no question about overwriting asked), the empty text on cancel.
    virtual std::u16string SaveFile(const FileDialogRequest& request) = 0;

    /// Lets the user choose a folder, `startFolder` being chosen at first. Returns its path, the
    /// empty text on cancel.
    virtual std::u16string BrowseForFolder(std::u16string_view title,
                                           std::u16string_view startFolder) = 0;
};

} // namespace vexmarrow

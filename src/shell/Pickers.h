// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// Describes a file dialog.
struct FileDialogRequest {
    std::u16string_view title;
    /// Pairs of a caption and a pattern, both followed by "|": "VCF Files (*.vcf)|*.vcf|". The
    /// pattern "*.*" matches every file, even if its name has no dot.
    std::u16string_view filter;
    /// Whether the user may choose several files at once. SaveFile ignores it.
    bool several = true;
};

inline constexpr std::u16string_view kTextFilesFilter =
    u"Text Files (*.txt)|*.txt|All Files (*.*)|*.*|";

/// The desktop's dialogs for choosing files and folders.
class Pickers {
public:
    virtual ~Pickers() = default;

    /// Lets the user choose existing files. Returns the full path if one file is chosen. For
    /// several files, returns their folder, followed by their names. Empty if the user cancels.
    virtual std::vector<std::u16string> OpenFiles(const FileDialogRequest& request) = 0;

    /// Lets the user name a file to write. Returns the path exactly as entered; no extension is
    /// added, and the user is not asked about overwriting. Empty if the user cancels.
    virtual std::u16string SaveFile(const FileDialogRequest& request) = 0;

    /// Lets the user choose a folder; `startFolder` is selected at first. Returns the path. Empty
    /// if the user cancels.
    virtual std::u16string BrowseForFolder(std::u16string_view title,
                                           std::u16string_view startFolder) = 0;
};

} // namespace vexmarrow

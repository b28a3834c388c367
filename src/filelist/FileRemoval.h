// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"

#include <cstddef>
#include <string_view>

namespace vexmarrow {

class FileList;

/// Removes rows from the list. ClearList and RemoveRow do nothing while the program is busy (see
/// MousePointer).
class FileRemoval {
public:
    FileRemoval(FileList& list, const Desktop& desktop) : list_(list), desktop_(desktop) {}

    /// "Remove Filenames Not Cont. X": asks for a text and removes every row whose path does not
    /// contain it in any letter case. Traps its own failures.
    void RemoveFilenamesNotContaining();

    /// "Remove Filenames Contain. X": the same for rows whose path contains the text.
    void RemoveFilenamesContaining();

    /// "Clear List": removes all rows. Traps its own failures.
    void ClearList();

    /// A double-click: removes a row. Does nothing if there is no row `number`.
    void RemoveRow(std::size_t number);

private:
    enum class Which { Containing, NotContaining };
    void Filter(std::u16string_view routine, std::u16string_view prompt, Which which);
    void RemoveEntries(std::u16string_view text, Which which);

    FileList& list_;
    Desktop desktop_;
};

} // namespace vexmarrow

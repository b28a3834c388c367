// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"

#include <string>
#include <string_view>

namespace vexmarrow {

class FileWriter;
class RFTSFSO;
class SetList;

/// The operations behind the buttons of the sets area. Each one traps its own failures.
class SetOperations {
public:
    SetOperations(SetList& sets, const Desktop& desktop, FileWriter& writer, const RFTSFSO& textio)
        : sets_(sets), desktop_(desktop), writer_(writer), textio_(textio) {}

    /// "Add Set": asks for one set as text and appends it (see SetList::FromText). Shows a message
    /// if the answer has no separator.
    void AddSet();

    /// "Remove Selected Set": removes the selected entry of each list. An index of -1 means that
    /// none is selected.
    void RemoveSelectedSet(int selectedFindText, int selectedReplaceText);

    /// "Clear": removes all sets.
    void ClearSets();

    /// "Save Sets": asks for a path, and before overwriting a file, and writes all sets.
    void SaveSets();

private:
    void AddSetFromText(std::u16string_view answer);
    void WriteSets(std::u16string_view path) const;

    SetList& sets_;
    Desktop desktop_;
    FileWriter& writer_;
    const RFTSFSO& textio_;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"

#include <span>
#include <string>
#include <string_view>

namespace vexmarrow {

class FileWriter;
class RFTSFSO;
class SetList;

/// What the buttons of the sets area do. Each operation traps its own failures.
class SetOperations {
public:
    /// An index of an entry that is no entry: nothing is selected.
    static constexpr int kNoSelection = -1;

    SetOperations(SetList& sets, const Desktop& desktop, FileWriter& writer, const RFTSFSO& textio)
        : sets_(sets), desktop_(desktop), writer_(writer), textio_(textio) {}

    /// "Add Set": asks for one set in text form and appends it. Text after a second separator is
    /// dropped; an answer without separator gets a message.
    void AddSet();

    /// "Remove Selected Set": removes the selected entry of each list, if there is one.
    void RemoveSelectedSet(int selectedFindText, int selectedReplaceText);

    /// "Clear": removes all sets.
    void ClearSets();

    /// "Save Sets": asks for a path, confirms overwriting, writes all sets.
    void SaveSets();

private:
    void AddSetFromText(std::u16string_view answer);
    void WriteSets(std::u16string_view path, std::span<const std::u16string> findTexts,
                   std::span<const std::u16string> replaceTexts) const;

    SetList& sets_;
    Desktop desktop_;
    FileWriter& writer_;
    const RFTSFSO& textio_;
};

} // namespace vexmarrow

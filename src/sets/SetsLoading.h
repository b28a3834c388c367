// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"

#include <functional>
#include <string>
#include <string_view>

namespace vexmarrow {

class RFTSFSO;
class SetList;

/// What the controls of the load-sets dialog do. Each operation traps its own failures, unless it
/// says otherwise.
class SetsLoading {
public:
    SetsLoading(SetList& sets, const Desktop& desktop, RFTSFSO& textio)
        : sets_(sets), desktop_(desktop), textio_(textio) {}

    /// The separator that was used last; no trap.
    std::u16string StoredSeparator() const;

    /// Keeps the separator, as each change of it asks for; no trap.
    void SaveSeparator(std::u16string_view separator);

    /// "...": lets the user choose the file; hands its path to `setFile` unless cancelled.
    void Browse(const std::function<void(const std::u16string&)>& setFile);

    /// "Load": appends the sets of the file, one a line: find text, separator, replace text. Text
    /// after a second separator is dropped; empty lines and lines without separator are left out.
    /// Returns whether the dialog closes: true also after a failed read, which is reported; false
    /// when the separator, the file's name or the file itself is lacking (only a lacking name has
    /// no message). Detects the file's encoding.
    bool Load(const std::u16string& file, std::u16string_view separator);

    /// "?": explains the format.
    void ShowHelp();

private:
    SetList& sets_;
    Desktop desktop_;
    RFTSFSO& textio_;
};

} // namespace vexmarrow

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

/// The operations behind the controls of the load-sets dialog.
class SetsLoading {
public:
    SetsLoading(SetList& sets, const Desktop& desktop, RFTSFSO& textio)
        : sets_(sets), desktop_(desktop), textio_(textio) {}

    /// The separator that was used last. Does not trap failures.
    std::u16string StoredSeparator() const;

    /// Remembers the separator, for the next use of the dialog. Does not trap failures.
    void SaveSeparator(std::u16string_view separator);

    /// "...": lets the user choose a file and passes its path to `setFile`. Does nothing if the
    /// user cancels. Traps its failures, as the operations below do.
    void Browse(const std::function<void(const std::u16string&)>& setFile);

    /// "Load": appends the sets in a file, which has one set per line (see SetList::FromText).
    /// Detects the file's encoding and skips lines without a separator. Returns whether the dialog
    /// closes: it stays open if the name is blank, or if a message says that the separator or the
    /// file is missing. It closes even if the file cannot be read, which is reported.
    bool Load(const std::u16string& file, std::u16string_view separator);

    /// "?": explains the format.
    void ShowHelp();

private:
    SetList& sets_;
    Desktop desktop_;
    RFTSFSO& textio_;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Desktop.h"

#include <cstddef>
#include <string>

namespace vexmarrow {

class FileList;
class ReplaceText;
class RunInputs;
class SetList;
class SystemCalls;

/// "Start Replacing": checks what the user has entered and passes each row of the list, in order,
/// to a routine of the engine. Yields before each file, and reads rows, texts, sets and options
/// again for each. Only the tab and the number of rows are fixed at the start.
class ReplacementRun {
public:
    ReplacementRun(SystemCalls& calls, const RunInputs& inputs, const FileList& list,
                   const SetList& sets, ReplaceText& engine, const Desktop& desktop)
        : calls_(calls),
          inputs_(inputs),
          list_(list),
          sets_(sets),
          engine_(engine),
          desktop_(desktop) {}

    /// Does a whole run, up to its last message. Does nothing while a run is in progress.
    void Start();

    /// Whether a run is in progress. It may be yielding.
    bool IsInProgress() const { return inProgress_; }

private:
    bool InputIsComplete();
    template <typename HandOver>
    void ForEachRow(class Trap& trap, HandOver handOver);
    void ReplaceSinglePair(const std::u16string& path, std::size_t row);
    void ReplaceSets(const std::u16string& path, std::size_t row);

    SystemCalls& calls_;
    const RunInputs& inputs_;
    const FileList& list_;
    const SetList& sets_;
    ReplaceText& engine_;
    Desktop desktop_;
    bool inProgress_ = false;
};

} // namespace vexmarrow

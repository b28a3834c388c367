// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/Core.h"
#include "filelist/FileAdding.h"
#include "filelist/FileList.h"
#include "sets/SetList.h"
#include "sets/SetOperations.h"

namespace vexmarrow::test {

inline Texts RowsOf(const FileList& list) {
    Texts rows;
    for (std::size_t i = 1; i <= list.Count(); ++i) {
        rows.push_back(list.Row(i));
    }
    return rows;
}

/// The two lists and what fills them.
struct Lists : Core {
    FileList list;
    SetList sets;
    ScriptedPickers pickers;
    MemorySettings settings;
    ScriptedEventLoop loop;
    RecordingPointer pointer;
    FileAdding adding{list, prompts, pickers, settings, loop, pointer, textio};
    SetOperations operations{sets, prompts, pickers, writer, ansi};

    /// All sets: find texts, "=", replace texts, each in brackets.
    std::string Sets() const {
        std::string all;
        for (const auto texts : {sets.FindTexts(), sets.ReplaceTexts()}) {
            for (const std::u16string& text : texts) {
                all.append("(").append(NativeName(text)).append(")");
            }
            all += "=";
        }
        return all;
    }
};

} // namespace vexmarrow::test

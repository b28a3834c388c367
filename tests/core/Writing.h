// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/Safety.h"

namespace vexmarrow::test {

/// A writer and the routines over it, on system calls that can be made to fail.
struct Writing : Safety {
    FaultySystemCalls calls;
    RFTSFSO textio{calls, flags, ansi};
    SafeWriter writer{calls, Logs()};
    ReplaceText engine{textio, writer, prompts};

    /// The first lines of the reports since the last call, without the folder's name.
    Strings Reports() {
        Strings reports;
        for (const Box& box : prompts.boxes) {
            std::string text = NativeName(box.text.substr(0, box.text.find(u"\r\n")));
            for (std::size_t at; (at = text.find(folder.Native() + "/")) != std::string::npos;) {
                text.erase(at, folder.Native().size() + 1);
            }
            reports.push_back(text);
        }
        prompts.boxes.clear();
        return reports;
    }
    std::string Put(const std::string& name, const std::string& text = "new") {
        return Safety::Put(calls, writer, name, text);
    }
};

} // namespace vexmarrow::test

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "sets/SetsLoading.h"

#include "base/Text.h"
#include "sets/SetList.h"
#include "shell/Choices.h"
#include "shell/Pickers.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"
#include "textio/FileAttributes.h"
#include "textio/PathChecks.h"
#include "textio/RFTSFSO.h"

#include <utility>
#include <vector>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kFormatHelp =
    u"If the text file you are loading looks like this:\r\n\r\n"
    u"hi::hello\r\npeter::pete\r\n\r\n"
    u"then use :: as a Separator\r\n\r\n"
    u"If the text file you are loading looks like this:\r\n\r\n"
    u"hi,hello\r\npeter,pete\r\n\r\n"
    u"then use , as a Separator\r\n\r\n"
    u"NOTE: The 'Save Sets' feature in this software always saves in this format:\r\n\r\n"
    u"hi::hello\r\npeter::pete";

/// Whether a file exists. Hidden and system files do not count.
bool IsNormalFile(SystemCalls& calls, const std::u16string& path) {
    return IsExistingFile(calls, path) && (FileAttributes(calls, path) & (kHidden | kSystem)) == 0;
}

std::vector<SetList::Set> SetsIn(const std::vector<std::u16string>& lines,
                                 std::u16string_view separator) {
    std::vector<SetList::Set> sets;
    for (const std::u16string& line : lines) {
        if (std::optional<SetList::Set> set = SetList::FromText(line, separator)) {
            sets.push_back(std::move(*set));
        }
    }
    return sets;
}

} // namespace

std::u16string SetsLoading::StoredSeparator() const {
    return LoadChoice(desktop_.settings, choices::kSetsSeparator);
}

void SetsLoading::SaveSeparator(std::u16string_view separator) {
    SaveChoice(desktop_.settings, choices::kSetsSeparator, separator);
}

void SetsLoading::Browse(const std::function<void(const std::u16string&)>& setFile) {
    Trap trap(desktop_.prompts, u"Form2.PushButton16_Click");
    std::vector<std::u16string> choice;
    trap.Do(1, [&] {
        choice = desktop_.pickers.OpenFiles({.title = u"Select Text File",
                                             .filter = u"Text Files (*.txt)|*.txt|",
                                             .several = false});
    });
    if (!choice.empty()) {
        trap.Do(2, [&] { setFile(choice.front()); });
    }
}

bool SetsLoading::Load(const std::u16string& file, std::u16string_view separator) {
    Trap trap(desktop_.prompts, u"Form2.PushButton1_Click");
    if (separator.empty()) {
        trap.Do(1,
                [&] { desktop_.prompts.ShowMessage(u"You must enter separating character(s)."); });
        return false;
    }
    if (IsBlank(file)) {
        return false;
    }
    if (!IsNormalFile(textio_.Calls(), file)) {
        trap.Do(2, [&] {
            desktop_.prompts.ShowMessage(Concat(file, u" not found."), BoxStyle::Critical,
                                         u"File Not Found");
        });
        return false;
    }
    std::vector<std::u16string> lines;
    trap.Do(3, [&] { lines = textio_.ReadTextLines(file); });
    trap.Do(4, [&] { sets_.Add(SetsIn(lines, separator)); });
    return true;
}

void SetsLoading::ShowHelp() {
    Trap trap(desktop_.prompts, u"Form2.PushButton3_Click");
    trap.Do(1, [&] { desktop_.prompts.ShowMessage(kFormatHelp); });
}

} // namespace vexmarrow

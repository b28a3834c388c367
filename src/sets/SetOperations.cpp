// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "sets/SetOperations.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "sets/SetList.h"
#include "shell/Pickers.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"
#include "textio/CodePage.h"
#include "textio/FileWriter.h"
#include "textio/PathChecks.h"
#include "textio/RFTSFSO.h"

#include <utility>

namespace vexmarrow {

void SetOperations::AddSet() {
    Trap trap(desktop_.prompts, u"Form1.PushButton7_Click");
    std::u16string answer;
    trap.Do(1, [&] {
        answer =
            desktop_.prompts.AskForText(u"Enter find and replace set (use :: to separate find text "
                                        u"and replace text):",
                                        u"findwhat::replacewith");
    });
    if (!answer.empty()) {
        trap.Do(2, [&] { AddSetFromText(answer); });
    }
}

void SetOperations::AddSetFromText(std::u16string_view answer) {
    std::optional<SetList::Set> set = SetList::FromText(answer, SetList::kSeparator);
    if (set) {
        sets_.Add(std::move(set->find), std::move(set->replace));
    } else {
        desktop_.prompts.ShowMessage(
            u"You must use :: to separate the find text from the replace text");
    }
}

void SetOperations::RemoveSelectedSet(int selectedFindText, int selectedReplaceText) {
    Trap trap(desktop_.prompts, u"Form1.PushButton6_Click");
    if (selectedFindText >= 0) {
        trap.Do(1, [&] { sets_.RemoveFindText(static_cast<std::size_t>(selectedFindText)); });
    }
    if (selectedReplaceText >= 0) {
        trap.Do(2, [&] { sets_.RemoveReplaceText(static_cast<std::size_t>(selectedReplaceText)); });
    }
}

void SetOperations::ClearSets() {
    Trap trap(desktop_.prompts, u"Form1.PushButton4_Click");
    trap.Do(1, [&] { sets_.ClearFindTexts(); });
    trap.Do(2, [&] { sets_.ClearReplaceTexts(); });
}

void SetOperations::SaveSets() {
    Trap trap(desktop_.prompts, u"Form1.PushButton12_Click");
    std::u16string path;
    trap.Do(1, [&] {
        path = desktop_.pickers.SaveFile({.title = u"Save", .filter = kTextFilesFilter});
    });
    if (path.empty()) {
        return;
    }
    if (IsExistingPath(textio_.Calls(), path)) {
        Answer answer = Answer::No;
        trap.Do(2, [&] {
            answer = desktop_.prompts.ShowMessage(
                Concat(u"Are you sure you wish to overwrite ", path, u" ?"), BoxStyle::YesNo);
        });
        if (answer != Answer::Yes) {
            return;
        }
    }
    trap.Do(3, [&] { WriteSets(path); });
    writer_.Settle();
}

void SetOperations::WriteSets(std::u16string_view path) const {
    const std::unique_ptr<PendingFile> file = writer_.Begin(path);
    const auto findTexts = sets_.FindTexts();
    const auto replaceTexts = sets_.ReplaceTexts();
    std::string bytes;
    for (std::size_t i = 0; i < findTexts.size(); ++i) {
        if (i >= replaceTexts.size()) {
            throw Failure(Concat(u"Set number ", Decimal(static_cast<long long>(i) + 1),
                                 u" has no replace text."));
        }
        textio_.Ansi().Page().Encode(
            Concat(findTexts[i], SetList::kSeparator, replaceTexts[i], kCrLf), bytes);
    }
    file->Append(bytes);
    file->Seal();
    file->Commit();
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "run/ReplacementRun.h"

#include "engine/ReplaceText.h"
#include "filelist/FileList.h"
#include "run/AtScopeEnd.h"
#include "run/RunInputs.h"
#include "sets/SetList.h"
#include "shell/EventLoop.h"
#include "shell/MousePointer.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"
#include "textio/PathChecks.h"

#include <cstdint>

namespace vexmarrow {

void ReplacementRun::Start() {
    if (inProgress_) {
        return;
    }
    inProgress_ = true;
    const AtScopeEnd end([this] {
        engine_.Settle();
        inProgress_ = false;
    });
    Trap trap(desktop_.prompts, u"Form1.PushButton1_Click");
    bool complete = false;
    trap.Do(1, [&] { complete = InputIsComplete(); });
    if (!complete) {
        return;
    }
    Tab tab = Tab::SinglePair;
    trap.Do(2, [&] { tab = inputs_.SelectedTab(); });
    if (tab == Tab::SinglePair) {
        ForEachRow(trap, [&](const std::u16string& path, std::size_t row) {
            // Empty files and files that cannot be opened are skipped without a message.
            if (engine_.SizeOfNext(path, LocationOf(inputs_)) > 0) {
                ReplaceSinglePair(path, row);
            }
        });
    } else if (tab == Tab::Sets) {
        ForEachRow(trap,
                   [&](const std::u16string& path, std::size_t row) { ReplaceSets(path, row); });
    }
}

bool ReplacementRun::InputIsComplete() {
    if (inputs_.FindText().empty()) { // even if the other tab is selected
        desktop_.prompts.ShowMessage(u"You forgot to input find what.");
        return false;
    }
    const bool folderExists = IsFolder(calls_, inputs_.OutputFolder());
    if (!folderExists && !inputs_.SavesBesideInput()) {
        desktop_.prompts.ShowMessage(u"Folder does not exist. Please select another folder.");
        return false;
    }
    return true;
}

template <typename HandOver>
void ReplacementRun::ForEachRow(Trap& trap, HandOver handOver) {
    trap.Do(3, [&] { desktop_.pointer.SetPointer(MousePointer::Hourglass); });
    const std::size_t rows = list_.Count();
    if (rows == 0) {
        trap.Do(4, [&] { desktop_.prompts.ShowMessage(u"No files added."); });
    } else {
        // Declared before the loop: if rows have been removed meanwhile, reading a row fails, and
        // the path of the row before it is handed over again.
        std::u16string path;
        for (std::size_t row = 1; row <= rows; ++row) {
            trap.Do(5, [&] { desktop_.eventLoop.Yield({u"File", row, rows}); });
            trap.Do(6, [&] { path = list_.Row(row); });
            trap.Do(7, [&] { handOver(path, row); });
        }
        engine_.Settle(); // no file should stay locked while the box is open
        trap.Do(8, [&] { desktop_.prompts.ShowMessage(u"Done."); });
    }
    trap.Do(9, [&] { desktop_.pointer.SetPointer(MousePointer::Default); });
}

void ReplacementRun::ReplaceSinglePair(const std::u16string& path, std::size_t row) {
    const auto index = static_cast<std::int32_t>(row);
    const std::u16string find = inputs_.FindText();
    const std::u16string replace = inputs_.ReplacementText();
    const OutputLocation location = LocationOf(inputs_);
    const auto replaceIn = [&](vcard::LinePart part, auto routine) {
        if (inputs_.ReadAsVCards()) {
            engine_.ReplaceTextInCards(path, part, find, replace, location);
        } else {
            (engine_.*routine)(path, find, replace, location, index);
        }
    };
    switch (inputs_.Mode()) {
    case ReplacementMode::None:
        break;
    case ReplacementMode::FieldsOnly:
        replaceIn(vcard::LinePart::Fields, &ReplaceText::ReplaceTextInFileFieldOnly);
        break;
    case ReplacementMode::ValuesOnly:
        replaceIn(vcard::LinePart::Values, &ReplaceText::ReplaceTextInFileDataOnly);
        break;
    case ReplacementMode::WholeText:
        replaceIn(vcard::LinePart::WholeLine, &ReplaceText::ReplaceTextInFile);
        break;
    }
}

void ReplacementRun::ReplaceSets(const std::u16string& path, std::size_t row) {
    const SetTexts sets{sets_.FindTexts(), sets_.ReplaceTexts(), sets_.Revision()};
    const OutputLocation location = LocationOf(inputs_);
    if (inputs_.ReadAsVCards()) {
        engine_.ReplaceSetsInCards(path, sets, location);
    } else {
        engine_.ReplaceTextInFileCombo(path, sets, location, static_cast<std::int32_t>(row));
    }
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// How the main window starts: its looks, and the user's last choices.

#include "app/CodePageChooser.h"
#include "app/FileListPanel.h"
#include "app/FileListView.h"
#include "app/FindPanel.h"
#include "app/Form1.h"
#include "app/Look.h"
#include "app/SavePanel.h"
#include "app/StatusLine.h"
#include "app/Strings.h"
#include "base/Failure.h"
#include "base/Text.h"
#include "shell/Choices.h"
#include "shell/ProductTexts.h"
#include "shell/Trap.h"
#include "textio/CodePage.h"
#include "textio/PathChecks.h"
#include "textio/RFTSFSO.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QTabWidget>

namespace vexmarrow {
void Form1::Form_Load() {
    Trap trap(services_.prompts, u"Form1.Form_Load");
    SettingsStore& settings = services_.settings;
    trap.Do(1, [&] { LoadSkin(); });
    trap.Do(2, [&] { LoadHandCursor(); });
    trap.Do(3, [&] { samples_.RecordOnce(); });
    trap.Do(4, [&] { setWindowTitle(ToQString(kProductName)); });
    trap.Do(5, [&] { ChooseCodePage(); });
    status_->CodePage->ShowPage(services_.ansi.Page().Name());
    trap.Do(6, [&] { LoadDragPointer(); });
    const int line = RestoreOptions(trap, RestoreOptions(trap, 7, findOptions_), saveOptions_);
    trap.Do(line, [&] { FollowOption4(); });

    // Setting the options was no click of the user's. The tab and the output folder, on the other
    // hand, are saved whenever they change, now included.
    SaveWhenPressed(findOptions_);
    SaveWhenPressed(saveOptions_);
    connect(find_->TabControl1, &QTabWidget::currentChanged, this,
            &Form1::TabControl1_SelectedChanged);
    connect(save_->Text3, &QLineEdit::textChanged, this, &Form1::Text3_Change);

    trap.Do(line + 1, [&] { RestoreTab(LoadChoice(settings, choices::kSelectedTab)); });
    trap.Do(line + 2, [&] {
        save_->Text3->setText(
            ToQString(LoadChoice(settings, Choice<std::u16string>{choices::kOutputFolder.key,
                                                                  services_.desktopFolder})));
    });
    trap.Do(line + 3,
            [&] { find_->ReadAsVCards->setChecked(LoadChoice(settings, choices::kReadAsVCards)); });
    connect(find_->ReadAsVCards, &QCheckBox::toggled, this, &Form1::ReadAsVCards_Click);
}

void Form1::LoadSkin() {
    const std::u16string path = services_.programFolder + u"/x/o.cjs";
    if (!IsExistingFile(services_.textio.Calls(), path)) {
        return;
    }
    // The ground of the window, and of all that stands on it, gets the colour of buttons first.
    QPalette colours = palette();
    colours.setColor(QPalette::Window, colours.color(QPalette::Button));
    setPalette(colours);
    ApplySkin(ToQString(path));
}

void Form1::LoadHandCursor() {
    const std::u16string path = services_.programFolder + u"/HAND-M.CUR";
    if (IsExistingFile(services_.textio.Calls(), path)) {
        hand_ = LoadPointer(ToQString(path), devicePixelRatioF());
    }
}

void Form1::LoadDragPointer() {
    const std::u16string path = services_.programFolder + u"/drag.ico";
    try {
        if (IsExistingFile(services_.textio.Calls(), path)) {
            files_->ListView1->SetDragCursor(LoadPointer(ToQString(path), devicePixelRatioF()));
        }
    } catch (const Failure&) {
        return; // a row can be dragged with the normal pointer as well
    }
}

void Form1::ChooseCodePage() {
    const std::u16string page = LoadChoice(services_.settings, choices::kCodePage);
    if (!page.empty()) {
        services_.ansi.Choose(page);
    }
}

void Form1::RestoreTab(int tab) {
    if (tab < 0 || tab >= find_->TabControl1->count()) {
        throw Failure(Concat(u"There is no tab number ", Decimal(tab), u"."));
    }
    find_->TabControl1->setCurrentIndex(tab);
}

} // namespace vexmarrow

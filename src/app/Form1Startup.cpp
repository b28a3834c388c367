// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// What the main window does before it is shown.

#include "app/CodePageChooser.h"
#include "app/FileListPanel.h"
#include "app/FileListView.h"
#include "app/FindPanel.h"
#include "app/Form1.h"
#include "app/LookFiles.h"
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
    trap.Do(2, [&] { hand_ = PointerBesideProgram(u"/HAND-M.CUR"); });
    trap.Do(3, [&] { samples_.RecordOnce(); });
    trap.Do(4, [&] { setWindowTitle(ToQString(kProductName)); });
    trap.Do(5, [&] { RestoreCodePage(); });
    status_->CodePage->ShowPage(services_.ansi.Page().Name());
    trap.Do(6, [&] { LoadDragPointer(); });
    RestoreOptions(trap, findOptions_);
    RestoreOptions(trap, saveOptions_);
    trap.Do(12, [&] { EnableOutputFolder(); });

    // From here on, the user's presses save the options; restoring them above saved nothing. The
    // tab and the output folder are saved at every change, also when they are restored below.
    SaveWhenPressed(findOptions_);
    SaveWhenPressed(saveOptions_);
    connect(find_->TabControl1, &QTabWidget::currentChanged, this,
            [&settings](int tab) { SaveChoice(settings, choices::kSelectedTab, tab); });
    connect(save_->Text3, &QLineEdit::textChanged, this,
            [this, &settings] { SaveChoice(settings, choices::kOutputFolder, OutputFolder()); });

    trap.Do(13, [&] { RestoreTab(LoadChoice(settings, choices::kSelectedTab)); });
    trap.Do(14, [&] {
        save_->Text3->setText(
            ToQString(LoadChoice(settings, Choice<std::u16string>{choices::kOutputFolder.key,
                                                                  services_.desktopFolder})));
    });
    trap.Do(15,
            [&] { find_->ReadAsVCards->setChecked(LoadChoice(settings, choices::kReadAsVCards)); });
    connect(find_->ReadAsVCards, &QCheckBox::toggled, this,
            [&settings](bool set) { SaveChoice(settings, choices::kReadAsVCards, set); });
}

/// The full path of a file in the program's folder; empty if there is no such file.
QString Form1::FileBesideProgram(std::u16string_view name) const {
    const std::u16string path = Concat(services_.programFolder, name);
    return IsExistingFile(services_.textio.Calls(), path) ? ToQString(path) : QString();
}

void Form1::LoadSkin() {
    const QString path = FileBesideProgram(u"/x/o.cjs");
    if (path.isEmpty()) {
        return;
    }
    // The skin applies to a window whose background has the colour of buttons.
    QPalette colours = palette();
    colours.setColor(QPalette::Window, colours.color(QPalette::Button));
    setPalette(colours);
    ApplySkin(path);
}

/// The pointer in a file in the program's folder; the default pointer if there is no such file.
QCursor Form1::PointerBesideProgram(std::u16string_view name) const {
    const QString path = FileBesideProgram(name);
    return path.isEmpty() ? QCursor() : LoadPointer(path, devicePixelRatioF());
}

void Form1::LoadDragPointer() {
    try {
        files_->ListView1->SetDragCursor(PointerBesideProgram(u"/drag.ico"));
    } catch (const Failure&) {
        return; // rows can be dragged with the normal pointer, too
    }
}

void Form1::RestoreCodePage() {
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

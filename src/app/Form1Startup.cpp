// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// How the main window starts: its looks, and the user's last choices.

#include "app/CodePageChooser.h"
#include "app/Controls.h"
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
#include "shell/SettingsStore.h"
#include "shell/Titles.h"
#include "shell/Trap.h"
#include "shell/Values.h"
#include "textio/CodePage.h"
#include "textio/FileTests.h"
#include "textio/RFTSFSO.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabWidget>

#include <array>

namespace vexmarrow {
namespace {

/// The option buttons whose state is kept, under their names, and what they are when the settings
/// do not tell.
struct StoredOption {
    std::u16string_view key;
    std::u16string_view fallback;
};
constexpr std::array kStoredOptions{
    StoredOption{u"Option1", u"0"}, StoredOption{u"Option2", u"0"}, StoredOption{u"Option3", u"1"},
    StoredOption{u"Option4", u"1"}, StoredOption{u"Option5", u"0"},
};

} // namespace

void Form1::Form_Load() {
    Trap trap(services_.prompts, u"Form1.Form_Load");
    SettingsStore& settings = services_.settings;
    trap.Do(1, [&] { LoadSkin(); });
    trap.Do(2, [&] { LoadHandCursor(); });
    trap.Do(3, [&] { samples_.RecordOnce(); });
    trap.Do(4, [&] { setWindowTitle(ToQString(kProductName)); });
    trap.Do(5, [&] { ChooseCodePage(); });
    status_->Combo3->ShowPage(services_.ansi.Page().Name());
    trap.Do(6, [&] { LoadDragPointer(); });
    const int line = RestoreOptions(trap, 7);
    trap.Do(line, [&] { FollowOption4(); });

    // Setting the options was no click of the user's. The tab and the output folder, on the other
    // hand, are saved whenever they change, now included.
    for (QRadioButton* const option : {find_->Option1, find_->Option2, find_->Option3}) {
        OnPress(option, [this] { SaveModeOptions(); });
    }
    for (QRadioButton* const option : {save_->Option4, save_->Option5}) {
        OnPress(option, [this] { SaveOutputOptions(); });
    }
    connect(find_->TabControl1, &QTabWidget::currentChanged, this,
            &Form1::TabControl1_SelectedChanged);
    connect(save_->Text3, &QLineEdit::textChanged, this, &Form1::Text3_Change);

    trap.Do(line + 1, [&] { RestoreTab(settings.GetSetting(u"TabSel", u"0")); });
    trap.Do(line + 2, [&] {
        save_->Text3->setText(
            ToQString(settings.GetSetting(u"Output Folder", services_.desktopFolder)));
    });
    trap.Do(line + 3, [&] {
        find_->ReadAsVCards->setChecked(
            BooleanFromText(settings.GetSetting(u"ReadAsVCards", u"False")));
    });
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
    const std::u16string page = services_.settings.GetSetting(kCodePageSetting, u"");
    if (!page.empty()) {
        services_.ansi.Choose(page);
    }
}

int Form1::RestoreOptions(Trap& trap, int line) {
    const std::array options{find_->Option1, find_->Option2, find_->Option3, save_->Option4,
                             save_->Option5};
    for (std::size_t i = 0; i < options.size(); ++i) {
        trap.Do(line++, [&] {
            const StoredOption& stored = kStoredOptions[i];
            SetOption(options[i],
                      BooleanFromText(services_.settings.GetSetting(stored.key, stored.fallback)));
        });
    }
    return line;
}

void Form1::RestoreTab(const std::u16string& stored) {
    const int tab = IntegerFromText(stored);
    if (tab < 0 || tab >= find_->TabControl1->count()) {
        throw Failure(Concat(u"There is no tab number ", stored, u"."));
    }
    find_->TabControl1->setCurrentIndex(tab);
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/FindPanel.h"

#include "app/ControlHabits.h"
#include "app/ControlTable.h"
#include "app/LinesEdit.h"
#include "app/MakeControls.h"
#include "app/Note.h"
#include "app/SetsTable.h"
#include "app/Strings.h"
#include "app/WrappedCheckBox.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

namespace vexmarrow {
namespace {

constexpr QMargins kAroundPage(9, 5, 9, 6); // pixels
constexpr int kBetweenLines = 4;            // pixels
constexpr int kBetweenButtons = 6;          // pixels

QComboBox* MakeCombo(QWidget* parent) {
    auto* const combo = new QComboBox(parent);
    // A long text must not make the window wide.
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(12);
    combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return combo;
}

} // namespace

FindPanel::FindPanel(ControlTable<Form1> controls, QWidget* parent)
    : QWidget(parent),
      TabControl1(new QTabWidget(this)),
      Frame1(new QGroupBox(this)),
      ReadAsVCards(new WrappedCheckBox(this)),
      OptionsNote(new Note(Frame1, u"OptionsNote", Frame1)) {
    SetName(TabControl1, u"TabControl1");
    SetName(Frame1, u"Frame1");
    SetName(ReadAsVCards, u"ReadAsVCards");
    TabControl1->setUsesScrollButtons(false); // there are two tabs, and always in sight
    TabControl1->addTab(MakeSinglePairTab(), QString());
    TabControl1->addTab(MakeSetsTab(controls), QString());
    int index = 0;
    for (const ControlTexts& tab : TextsOf(controls, ControlGroup::Tabs)) {
        TabControl1->setTabText(index, ToQString(tab.caption));
        TabControl1->setTabToolTip(index++, ToQString(tab.tip));
    }

    auto* const options = new QVBoxLayout(Frame1);
    for (const ControlTexts& option : TextsOf(controls, ControlGroup::FindOptions)) {
        Options.push_back(MakeOption(Frame1, option.name));
        options->addWidget(Options.back());
    }
    options->addWidget(OptionsNote);
    options->addStretch();
    MakeOneStop(Options);

    auto* const column = new QVBoxLayout;
    column->setSpacing(kBetweenLines);
    column->addWidget(TabControl1, 1);
    column->addWidget(ReadAsVCards);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addLayout(column, 1);
    row->addWidget(Frame1);
}

QWidget* FindPanel::MakeSinglePairTab() {
    auto* const page = new QWidget(TabControl1);
    Text1 = new LinesEdit(page);
    Text2 = new LinesEdit(page);
    QLabel* const label1 = MakeLabel(page, u"Label1", Text1);
    QLabel* const label2 = MakeLabel(page, u"Label2", Text2);
    SetName(Text1, u"Text1");
    SetName(Text2, u"Text2");

    auto* const grid = new QGridLayout(page);
    grid->setContentsMargins(kAroundPage);
    grid->setVerticalSpacing(kBetweenLines);
    grid->addWidget(label1, 0, 0);
    grid->addWidget(Text1, 1, 0);
    grid->addWidget(label2, 0, 1);
    grid->addWidget(Text2, 1, 1);
    TextsNote = new Note(page, u"TextsNote", Text2);
    grid->addWidget(TextsNote, 2, 0, 1, 2);
    grid->setRowStretch(1, 1);
    return page;
}

QWidget* FindPanel::MakeSetsTab(ControlTable<Form1> controls) {
    auto* const page = new QWidget(TabControl1);
    Combo1 = MakeCombo(page);
    Combo2 = MakeCombo(page);
    QLabel* const label3 = MakeLabel(page, u"Label3", Combo1);
    QLabel* const label4 = MakeLabel(page, u"Label4", Combo2);
    SetName(Combo1, u"Combo1");
    SetName(Combo2, u"Combo2");
    Sets = new SetsTable(page);
    SetName(Sets, u"SetsTable");

    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(kBetweenButtons);
    for (const ControlTexts& button : TextsOf(controls, ControlGroup::Sets)) {
        buttons->addWidget(MakeButton(page, button.name));
    }
    buttons->addStretch();

    auto* const grid = new QGridLayout(page);
    grid->setContentsMargins(kAroundPage);
    grid->setVerticalSpacing(kBetweenLines);
    grid->addWidget(label3, 0, 0);
    grid->addWidget(Combo1, 1, 0);
    grid->addWidget(label4, 0, 1);
    grid->addWidget(Combo2, 1, 1);
    grid->addWidget(Sets, 2, 0, 1, 2);
    SetsNote = new Note(page, u"SetsNote", Sets);
    QSizePolicy room = SetsNote->sizePolicy();
    room.setRetainSizeWhenHidden(true); // or all below would jump
    SetsNote->setSizePolicy(room);
    grid->addWidget(SetsNote, 3, 0, 1, 2);
    grid->addLayout(buttons, 4, 0, 1, 2);
    grid->setRowStretch(2, 1);
    return page;
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/FindPanel.h"

#include "app/ControlBehaviour.h"
#include "app/LinesEdit.h"
#include "app/MakeControls.h"
#include "app/Note.h"
#include "app/SetsTable.h"
#include "app/Strings.h"
#include "app/WrappedControls.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

namespace vexmarrow {
namespace {

constexpr QMargins kAroundTab(9, 5, 9, 6); // pixels
constexpr int kBetweenLines = 4;           // pixels
constexpr int kBetweenButtons = 6;         // pixels

QComboBox* MakeCombo(QWidget* parent, std::u16string_view name) {
    auto* const combo = MakeNamed<QComboBox>(parent, name);
    // A long text must not make the window wide.
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(12);
    combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return combo;
}

struct Captioned {
    std::u16string_view label;
    QWidget* control;
};

/// Begins the layout of a tab with two controls side by side.
QGridLayout* LayOutTab(QWidget* tab, const Captioned& left, const Captioned& right) {
    auto* const grid = new QGridLayout(tab);
    grid->setContentsMargins(kAroundTab);
    grid->setVerticalSpacing(kBetweenLines);
    grid->addWidget(MakeLabel(tab, left.label, left.control), 0, 0);
    grid->addWidget(left.control, 1, 0);
    grid->addWidget(MakeLabel(tab, right.label, right.control), 0, 1);
    grid->addWidget(right.control, 1, 1);
    return grid;
}

} // namespace

FindPanel::FindPanel(ControlTable<Form1> controls, QWidget* parent)
    : QWidget(parent),
      TabControl1(MakeNamed<QTabWidget>(this, u"TabControl1")),
      Frame1(MakeNamed<QGroupBox>(this, u"Frame1")),
      ReadAsVCards(new WrappedCheckBox(this, u"ReadAsVCards")),
      OptionsNote(new Note(Frame1, u"OptionsNote", Frame1)) {
    TabControl1->setUsesScrollButtons(false); // both tabs always have room
    TabControl1->addTab(MakeSinglePairTab(), QString());
    TabControl1->addTab(MakeSetsTab(controls), QString());
    int index = 0;
    for (const ControlRow& tab : RowsOf(controls, ControlGroup::Tabs)) {
        TabControl1->setTabText(index, ToQString(tab.caption));
        TabControl1->setTabToolTip(index++, ToQString(tab.tip));
    }

    auto* const lines = new QVBoxLayout(Frame1);
    std::vector<QRadioButton*> options;
    for (const ControlRow& option : RowsOf(controls, ControlGroup::FindOptions)) {
        options.push_back(MakeNamed<QRadioButton>(Frame1, option.name));
        lines->addWidget(options.back());
    }
    lines->addWidget(OptionsNote);
    lines->addStretch();
    MakeOneStop(options);

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
    auto* const tab = new QWidget(TabControl1);
    Text1 = MakeNamed<LinesEdit>(tab, u"Text1");
    Text2 = MakeNamed<LinesEdit>(tab, u"Text2");
    QGridLayout* const grid = LayOutTab(tab, {u"Label1", Text1}, {u"Label2", Text2});
    TextsNote = new Note(tab, u"TextsNote", Text2);
    grid->addWidget(TextsNote, 2, 0, 1, 2);
    grid->setRowStretch(1, 1);
    return tab;
}

QWidget* FindPanel::MakeSetsTab(ControlTable<Form1> controls) {
    auto* const tab = new QWidget(TabControl1);
    Combo1 = MakeCombo(tab, u"Combo1");
    Combo2 = MakeCombo(tab, u"Combo2");
    QGridLayout* const grid = LayOutTab(tab, {u"Label3", Combo1}, {u"Label4", Combo2});
    Sets = MakeNamed<SetsTable>(tab, u"SetsTable");
    grid->addWidget(Sets, 2, 0, 1, 2);
    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(kBetweenButtons);
    for (const ControlRow& button : RowsOf(controls, ControlGroup::Sets)) {
        buttons->addWidget(MakeButton(tab, button.name));
    }
    buttons->addStretch();
    SetsNote = new Note(tab, u"SetsNote", Sets);
    QSizePolicy room = SetsNote->sizePolicy();
    room.setRetainSizeWhenHidden(true); // otherwise the buttons below it would jump
    SetsNote->setSizePolicy(room);
    grid->addWidget(SetsNote, 3, 0, 1, 2);
    grid->addLayout(buttons, 4, 0, 1, 2);
    grid->setRowStretch(2, 1);
    return tab;
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/FindPanel.h"

#include "app/Controls.h"
#include "app/LinesEdit.h"
#include "app/Note.h"
#include "app/SetsTable.h"
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

constexpr std::u16string_view kFindCaption = u" Find &what (exact case):";
constexpr QMargins kAroundPage(9, 5, 9, 6); // pixels
constexpr int kBetweenLines = 4;            // pixels
constexpr int kBetweenButtons = 6;          // pixels
constexpr std::u16string_view kReplaceCaption = u" &Replace with:";

QComboBox* MakeCombo(QWidget* parent) {
    auto* const combo = new QComboBox(parent);
    // A long text must not make the window wide.
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(12);
    combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return combo;
}

} // namespace

FindPanel::FindPanel(QWidget* parent)
    : QWidget(parent),
      TabControl1(new QTabWidget(this)),
      Frame1(new QGroupBox(QStringLiteral("&Find Options"), this)),
      Option1(MakeOption(Frame1, u"Option1", u"Find and replace in fields only")),
      Option2(MakeOption(Frame1, u"Option2", u"Find and replace in values only")),
      Option3(MakeOption(Frame1, u"Option3", u"Find and replace in fields and values")),
      ReadAsVCards(new WrappedCheckBox(
          QStringLiteral(
              "Read as vCards (finds text in wrapped or coded lines, leaves photos alone) (&Y)"),
          this)),
      OptionsNote(new Note(Frame1, u"OptionsNote", Frame1)) {
    Name(TabControl1, u"TabControl1", u"Find and replace");
    TabControl1->setUsesScrollButtons(false); // there are two tabs, and always in sight
    TabControl1->addTab(MakeSinglePairTab(), QStringLiteral("Sin&gle find and replace"));
    TabControl1->addTab(MakeSetsTab(), QStringLiteral("M&ultiple find and replace (sets)"));

    Name(Frame1, u"Frame1", u"Find Options");
    auto* const options = new QVBoxLayout(Frame1);
    for (QRadioButton* const option : {Option1, Option2, Option3}) {
        options->addWidget(option);
    }
    options->addWidget(OptionsNote);
    options->addStretch();
    MakeOneStop({Option1, Option2, Option3});

    // No letter of its caption is free on this window.
    Name(ReadAsVCards, u"ReadAsVCards",
         u"Read as vCards (finds text in wrapped or coded lines, leaves photos alone)");

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
    QLabel* const label1 = MakeLabel(page, u"Label1", kFindCaption, Text1);
    QLabel* const label2 = MakeLabel(page, u"Label2", kReplaceCaption, Text2);
    Text1->setObjectName(QStringLiteral("Text1"));
    Text2->setObjectName(QStringLiteral("Text2"));

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

QWidget* FindPanel::MakeSetsTab() {
    auto* const page = new QWidget(TabControl1);
    Combo1 = MakeCombo(page);
    Combo2 = MakeCombo(page);
    QLabel* const label3 = MakeLabel(page, u"Label3", kFindCaption, Combo1);
    QLabel* const label4 = MakeLabel(page, u"Label4", kReplaceCaption, Combo2);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Combo2->setObjectName(QStringLiteral("Combo2"));
    Sets = new SetsTable(page);
    Name(Sets, u"SetsTable", u"Sets");

    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(kBetweenButtons);
    PushButton7 = MakeButton(page, u"PushButton7", u"A&dd Set");
    PushButton6 = MakeButton(page, u"PushButton6", u"Re&move Selected Set");
    PushButton10 = MakeButton(page, u"PushButton10", u"&Load Sets");
    PushButton4 = MakeButton(page, u"PushButton4", u"&Clear");
    PushButton12 = MakeButton(page, u"PushButton12", u"Sa&ve Sets");
    for (QPushButton* const button :
         {PushButton7, PushButton6, PushButton10, PushButton4, PushButton12}) {
        buttons->addWidget(button);
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

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Form2.h"

#include "app/ControlTable.h"
#include "app/MakeControls.h"
#include "app/Strings.h"
#include "app/ToolTips.h"
#include "sets/SetsLoading.h"
#include "shell/Trap.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <array>

namespace vexmarrow {

struct Form2::Table {
    using enum ControlGroup;

    static constexpr auto kRows = std::to_array<Control<Form2>>({
        {{u"Text1", None, u"&File To Load:", u"The text file to load, with one set per line."}},
        {{u"PushButton16", None, u"...", u"Choose the text file.", u"Browse"},
         [](Form2& form) { form.PushButton16_Click(); }},
        {{u"Text2", None, u"&Separator:",
          u"The characters between the find text and the replace text of each line."}},
        {{u"PushButton1", None, u"&Load", u"Add the sets in this file to the list of sets."},
         [](Form2& form) { form.PushButton1_Click(); }},
        {{u"PushButton2", None, u"&Cancel", u"Close this window without loading any sets."},
         [](Form2& form) { form.PushButton2_Click(); }},
        {{u"PushButton3", None, u"?", u"Show examples of such files and their separators.",
          u"Format help"},
         [](Form2& form) { form.loading_.ShowHelp(); }},
    });
    static_assert(AllDiffer(ControlTable<Form2>(kRows)), "two controls share a name or a letter");
};

Form2::Form2(SetsLoading& loading, Prompts& prompts, const QCursor& overButtons, QWidget* owner)
    : QDialog(owner),
      loading_(loading),
      prompts_(prompts),
      Text1(MakeLineEdit(this, u"Text1")),
      PushButton16(MakeSmallButton(this, u"PushButton16")),
      Text2(MakeLineEdit(this, u"Text2")),
      PushButton1(MakeButton(this, u"PushButton1")),
      PushButton2(MakeButton(this, u"PushButton2")),
      PushButton3(MakeSmallButton(this, u"PushButton3")) {
    SetName(this, u"Form2");
    setWindowTitle(QStringLiteral("Load Sets"));
    setAccessibleName(windowTitle());
    LayOut();
    WireControls(*this, ControlTable<Form2>(Table::kRows));
    MakeEquallyWide({PushButton1, PushButton2});
    ShowTipsInLines(*this);
    setPalette(owner->palette()); // a skin may have changed it
    for (QPushButton* const button : findChildren<QPushButton*>()) {
        button->setCursor(overButtons);
    }

    connect(Text2, &QLineEdit::textChanged, this,
            [this](const QString& separator) { loading_.SaveSeparator(ToText(separator)); });
}

void Form2::LayOut() {
    constexpr int kCharacters = 45;
    QLabel* const file = MakeLabel(this, u"Label1", Text1);
    QLabel* const separator = MakeLabel(this, u"Label2", Text2);
    Text1->setMinimumWidth(Text1->fontMetrics().averageCharWidth() * kCharacters);
    PushButton1->setDefault(true);

    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(PushButton1);
    buttons->addWidget(PushButton2);
    buttons->addWidget(PushButton3);
    auto* const grid = new QGridLayout(this);
    grid->addWidget(file, 0, 0);
    grid->addWidget(Text1, 0, 1);
    grid->addWidget(PushButton16, 0, 2);
    grid->addWidget(separator, 1, 0);
    grid->addWidget(Text2, 1, 1);
    grid->setRowStretch(2, 1);
    grid->addLayout(buttons, 3, 0, 1, 3);

    Text1->setFocus();
}

void Form2::Form_Load() {
    Trap trap(prompts_, u"Form2.Form_Load");
    trap.Do(1, [&] { Text2->setText(ToQString(loading_.StoredSeparator())); });
}

void Form2::PushButton1_Click() {
    if (loading_.Load(ToText(Text1->text()), ToText(Text2->text()))) {
        accept();
    }
}

void Form2::PushButton2_Click() {
    Trap trap(prompts_, u"Form2.PushButton2_Click");
    trap.Do(1, [&] { reject(); });
}

void Form2::PushButton16_Click() {
    loading_.Browse([this](const std::u16string& file) { Text1->setText(ToQString(file)); });
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Form2.h"

#include "app/Boxes.h"
#include "app/Controls.h"
#include "app/QtEventLoop.h"
#include "app/Strings.h"
#include "app/ToolTips.h"
#include "sets/SetsLoading.h"
#include "shell/Trap.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <limits>

namespace vexmarrow {

Form2::Form2(SetsLoading& loading, Prompts& prompts, const QCursor& overButtons, QWidget* owner)
    : QDialog(owner),
      loading_(loading),
      prompts_(prompts),
      Text1(new QLineEdit(this)),
      PushButton16(MakeSmallButton(this, u"PushButton16", u"...", u"Browse")),
      Text2(new QLineEdit(this)),
      PushButton1(MakeButton(this, u"PushButton1", u"&Load")),
      PushButton2(MakeButton(this, u"PushButton2", u"&Cancel")),
      PushButton3(MakeSmallButton(this, u"PushButton3", u"?", u"Format help")) {
    Name(this, u"Form2", u"Load Sets");
    setWindowTitle(QStringLiteral("Load Sets"));
    LayOut();
    SetToolTips(*this);
    setPalette(owner->palette()); // which a skin may have changed
    for (QPushButton* const button : findChildren<QPushButton*>()) {
        button->setCursor(overButtons);
    }

    const auto onClick = [this](QPushButton* button, void (Form2::*handler)()) {
        connect(button, &QPushButton::clicked, this, [this, handler] {
            if (!IsBehindBox(*this)) {
                RunHandler([&] { (this->*handler)(); });
            }
        });
    };
    onClick(PushButton1, &Form2::PushButton1_Click);
    onClick(PushButton2, &Form2::PushButton2_Click);
    onClick(PushButton3, &Form2::PushButton3_Click);
    onClick(PushButton16, &Form2::PushButton16_Click);
    connect(Text2, &QLineEdit::textChanged, this, &Form2::Text2_Change);
}

void Form2::LayOut() {
    constexpr int kCharacters = 45;
    QLabel* const file = MakeLabel(this, u"Label1", u"&File To Load:", Text1);
    QLabel* const separator = MakeLabel(this, u"Label2", u"&Separator:", Text2);
    for (QLineEdit* const box : {Text1, Text2}) {
        box->setMaxLength(std::numeric_limits<int>::max());
    }
    Text1->setObjectName(QStringLiteral("Text1"));
    Text1->setMinimumWidth(Text1->fontMetrics().averageCharWidth() * kCharacters);
    Text2->setObjectName(QStringLiteral("Text2"));
    PushButton1->setDefault(true);
    MakeEquallyWide({PushButton1, PushButton2});

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

    setTabOrder(Text1, PushButton16);
    setTabOrder(PushButton16, Text2);
    setTabOrder(Text2, PushButton1);
    setTabOrder(PushButton1, PushButton2);
    setTabOrder(PushButton2, PushButton3);
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

void Form2::PushButton3_Click() {
    loading_.ShowHelp();
}

void Form2::PushButton16_Click() {
    loading_.Browse([this](const std::u16string& file) { Text1->setText(ToQString(file)); });
}

void Form2::Text2_Change() {
    loading_.SaveSeparator(ToText(Text2->text()));
}

} // namespace vexmarrow

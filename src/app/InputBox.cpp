// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/InputBox.h"

#include "app/MakeControls.h"
#include "app/Strings.h"
#include "app/ToolTips.h"
#include "app/WaitingBoxes.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace vexmarrow {

InputBox::InputBox(QWidget* owner, const QString& title, const QString& prompt,
                   const QString& suggestion)
    : QDialog(owner), answer_(MakeLineEdit(this, u"Answer")) {
    constexpr int kCharacters = 60; // for a path
    setWindowTitle(title);
    setAccessibleName(title);
    setObjectName(QStringLiteral("InputBox"));

    QLabel* const label = MakeLabel(this, u"Prompt", answer_);
    label->setTextFormat(Qt::PlainText);
    SetCaption(answer_, ToText(u'&' + prompt));
    answer_->setToolTip(QStringLiteral("Type the text here."));
    answer_->setText(suggestion);
    answer_->selectAll();
    answer_->setMinimumWidth(answer_->fontMetrics().averageCharWidth() * kCharacters);

    auto* const buttons = new QDialogButtonBox(this); // in the order of the desktop
    QPushButton* const ok = MakeButton(buttons, u"OK", u"&OK");
    QPushButton* const cancel = MakeButton(buttons, u"Cancel", u"&Cancel");
    buttons->addButton(ok, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    ok->setDefault(true);
    MakeEquallyWide({ok, cancel});
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* const column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addWidget(answer_);
    column->addStretch();
    column->addWidget(buttons);
    ok->setToolTip(QStringLiteral("Continue with this text."));
    cancel->setToolTip(QStringLiteral("Close this window without changing anything."));
    ShowTipsInLines(*this);
}

QString InputBox::Ask() {
    return WaitFor(*this) == QDialog::Accepted ? answer_->text() : QString();
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/InputBox.h"

#include "app/Boxes.h"
#include "app/MakeControls.h"
#include "app/Strings.h"
#include "app/ToolTips.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <limits>

namespace vexmarrow {

InputBox::InputBox(QWidget* owner, const QString& title, const QString& prompt,
                   const QString& suggestion)
    : QDialog(owner), answer_(new QLineEdit(this)) {
    constexpr int kCharacters = 60; // a path is to fit
    setWindowTitle(title);
    setAccessibleName(title);
    setObjectName(QStringLiteral("InputBox"));

    QLabel* const label = MakeLabel(this, u"Prompt", answer_);
    label->setTextFormat(Qt::PlainText);
    SetName(answer_, u"Answer");
    SetCaption(answer_, ToText(u'&' + prompt));
    answer_->setToolTip(QStringLiteral("Type the text here."));
    answer_->setMaxLength(std::numeric_limits<int>::max());
    answer_->setText(suggestion);
    answer_->selectAll();
    answer_->setMinimumWidth(answer_->fontMetrics().averageCharWidth() * kCharacters);

    auto* const buttons = new QDialogButtonBox(this); // which has them in the order of the desktop
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

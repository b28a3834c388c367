// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/InputBox.h"

#include "app/Boxes.h"
#include "app/Controls.h"
#include "app/Strings.h"
#include "app/ToolTips.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <limits>
#include <utility>

namespace vexmarrow {

InputBox::InputBox(QWidget* owner, const QString& title, const QString& prompt,
                   const QString& suggestion)
    : QDialog(owner), answer_(new QLineEdit(this)) {
    constexpr int kCharacters = 60; // a path is to fit
    setWindowTitle(title);
    setAccessibleName(title);
    setObjectName(QStringLiteral("InputBox"));

    QLabel* const label = MakeLabel(this, u"Prompt", ToText(u'&' + prompt), answer_);
    label->setTextFormat(Qt::PlainText);
    answer_->setObjectName(QStringLiteral("Answer"));
    answer_->setMaxLength(std::numeric_limits<int>::max());
    answer_->setText(suggestion);
    answer_->selectAll();
    answer_->setMinimumWidth(answer_->fontMetrics().averageCharWidth() * kCharacters);

    auto* const buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    for (const auto& [which, caption] :
         {std::pair{QDialogButtonBox::Ok, u"&OK"}, {QDialogButtonBox::Cancel, u"&Cancel"}}) {
        const QString text = ToQString(caption);
        buttons->button(which)->setText(text);
        Name(buttons->button(which), ToText(text.mid(1)), caption);
    }
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* const column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addWidget(answer_);
    column->addStretch();
    column->addWidget(buttons);
    SetToolTips(*this);
}

QString InputBox::Ask() {
    return WaitFor(*this) == QDialog::Accepted ? answer_->text() : QString();
}

} // namespace vexmarrow

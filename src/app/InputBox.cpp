// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/InputBox.h"

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

    auto* const label = new QLabel(prompt, this);
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(answer_);
    answer_->setMaxLength(std::numeric_limits<int>::max());
    answer_->setText(suggestion);
    answer_->selectAll();
    answer_->setMinimumWidth(answer_->fontMetrics().averageCharWidth() * kCharacters);
    answer_->setAccessibleName(prompt.trimmed());

    auto* const buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("OK"));
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* const column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addWidget(answer_);
    column->addStretch();
    column->addWidget(buttons);
}

QString InputBox::Ask() {
    return exec() == QDialog::Accepted ? answer_->text() : QString();
}

} // namespace vexmarrow

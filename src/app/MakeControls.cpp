// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/MakeControls.h"

#include "app/Strings.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include <algorithm>

namespace vexmarrow {
namespace {

/// The caption without blanks around it and without the mark of its letter, which follows in
/// brackets where no letter of the caption itself is free.
QString TextOfCaption(std::u16string_view caption) {
    const QString text = ToQString(caption);
    return text.left(text.indexOf(QStringLiteral(" (&"))).remove(u'&').trimmed();
}

class SmallButton final : public QPushButton {
public:
    using QPushButton::QPushButton;
    QSize sizeHint() const override {
        constexpr int kCharacters = 7;
        return {fontMetrics().averageCharWidth() * kCharacters, QPushButton::sizeHint().height()};
    }
};

class LowButton final : public QPushButton {
public:
    using QPushButton::QPushButton;
    QSize minimumSizeHint() const override {
        constexpr int kAround = 4; // pixels above and below the letters, together
        return {QPushButton::minimumSizeHint().width(), fontMetrics().height() + kAround};
    }
};

template <typename Button>
QPushButton* MakeButtonOf(QWidget* parent, std::u16string_view name) {
    auto* const button = new Button(parent);
    button->setAutoDefault(true); // Enter presses it, also where there is no dialog
    SetName(button, name);
    return button;
}

void SetCaptionOnLabel(const QWidget* control, const QString& caption) {
    for (QLabel* const label : control->window()->findChildren<QLabel*>()) {
        if (label->buddy() == control) {
            label->setText(caption);
        }
    }
}

} // namespace

QPushButton* MakeButton(QWidget* parent, std::u16string_view name, std::u16string_view caption) {
    QPushButton* const button = MakeButtonOf<QPushButton>(parent, name);
    SetCaption(button, caption);
    return button;
}

QRadioButton* MakeOption(QWidget* parent, std::u16string_view name) {
    auto* const option = new QRadioButton(parent);
    SetName(option, name);
    return option;
}

QPushButton* MakeLowButton(QWidget* parent, std::u16string_view name) {
    QPushButton* const button = MakeButtonOf<LowButton>(parent, name);
    button->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Maximum);
    return button;
}

QPushButton* MakeSmallButton(QWidget* parent, std::u16string_view name) {
    QPushButton* const button = MakeButtonOf<SmallButton>(parent, name);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return button;
}

QLabel* MakeLabel(QWidget* parent, std::u16string_view name, QWidget* control) {
    auto* const label = new QLabel(parent);
    SetName(label, name);
    label->setBuddy(control);
    return label;
}

void MakeEquallyWide(const QList<QPushButton*>& row) {
    int widest = 0;
    for (const QPushButton* const button : row) {
        widest = std::max(widest, button->sizeHint().width());
    }
    for (QPushButton* const button : row) {
        button->setMinimumWidth(widest);
    }
}

void SetName(QWidget* control, std::u16string_view name) {
    control->setObjectName(ToQString(name));
}

void SetCaption(QWidget* control, std::u16string_view caption, std::u16string_view spoken) {
    const QString text = ToQString(caption);
    if (auto* const button = qobject_cast<QAbstractButton*>(control)) {
        button->setText(text);
    } else if (auto* const frame = qobject_cast<QGroupBox*>(control)) {
        frame->setTitle(text);
    } else {
        SetCaptionOnLabel(control, text);
    }
    control->setAccessibleName(TextOfCaption(spoken.empty() ? caption : spoken));
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/MakeControls.h"

#include "app/Strings.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyleOptionButton>
#include <QStylePainter>

#include <algorithm>
#include <limits>

namespace vexmarrow {
namespace {

/// A caption as it is spoken. If no letter of a caption is free, another one follows it in
/// brackets, as in "Undo Last Run (&Z)", which is not spoken.
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
        constexpr int kAround = 4; // pixels above and below the text, together
        return {QPushButton::minimumSizeHint().width(), fontMetrics().height() + kAround};
    }
};

class ShrinkingButton final : public QPushButton {
public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override {
        constexpr int kCharactersAround = 2;
        return QPushButton::sizeHint() +
               QSize(fontMetrics().averageCharWidth() * kCharactersAround, 0);
    }
    QSize minimumSizeHint() const override {
        return QPushButton::sizeHint() - QSize(CaptionWidth() * 2 / 3, 0);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QStylePainter painter(this);
        QStyleOptionButton option;
        initStyleOption(&option);
        const int room = width() - (QPushButton::sizeHint().width() - CaptionWidth());
        option.text =
            fontMetrics().elidedText(option.text, Qt::ElideRight, room, Qt::TextShowMnemonic);
        painter.drawControl(QStyle::CE_PushButton, option);
    }

private:
    int CaptionWidth() const { return fontMetrics().size(Qt::TextShowMnemonic, text()).width(); }
};

template <typename Button>
QPushButton* MakeButtonOf(QWidget* parent, std::u16string_view name) {
    auto* const button = MakeNamed<Button>(parent, name);
    button->setAutoDefault(true); // Enter presses it, even outside a dialog
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

QPushButton* MakeShrinkingButton(QWidget* parent, std::u16string_view name) {
    QPushButton* const button = MakeButtonOf<ShrinkingButton>(parent, name);
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    return button;
}

QLineEdit* MakeLineEdit(QWidget* parent, std::u16string_view name) {
    auto* const edit = MakeNamed<QLineEdit>(parent, name);
    edit->setMaxLength(std::numeric_limits<int>::max());
    return edit;
}

QLabel* MakeLabel(QWidget* parent, std::u16string_view name, QWidget* control) {
    auto* const label = MakeNamed<QLabel>(parent, name);
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

int PixelsFromTwips(const QWidget& widget, int twips) {
    constexpr int kTwipsPerInch = 1440;
    return (twips * widget.logicalDpiX() + kTwipsPerInch / 2) / kTwipsPerInch;
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Controls.h"

#include "app/Boxes.h"
#include "app/Strings.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include <algorithm>
#include <memory>

namespace vexmarrow {

namespace {

QString NameOf(std::u16string_view caption) {
    return ToQString(caption).remove(u'&').trimmed();
}

class WheelKeeper final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* const control = qobject_cast<const QWidget*>(watched);
        if (event->type() == QEvent::Wheel && control != nullptr && !control->hasFocus()) {
            event->ignore();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }
};

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
QPushButton* MakeButtonOf(QWidget* parent, std::u16string_view name, std::u16string_view caption,
                          std::u16string_view accessibleName) {
    auto* const button = new Button(ToQString(caption), parent);
    button->setAutoDefault(true); // Enter presses it, also where there is no dialog
    Name(button, name, accessibleName);
    return button;
}

} // namespace

void Name(QWidget* control, std::u16string_view name, std::u16string_view accessibleName) {
    control->setObjectName(ToQString(name));
    control->setAccessibleName(NameOf(accessibleName));
}

QPushButton* MakeButton(QWidget* parent, std::u16string_view name, std::u16string_view caption) {
    return MakeButtonOf<QPushButton>(parent, name, caption, caption);
}

QPushButton* MakeLowButton(QWidget* parent, std::u16string_view name, std::u16string_view caption) {
    QPushButton* const button = MakeButtonOf<LowButton>(parent, name, caption, caption);
    button->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Maximum);
    return button;
}

QPushButton* MakeSmallButton(QWidget* parent, std::u16string_view name, std::u16string_view caption,
                             std::u16string_view accessibleName) {
    QPushButton* const button = MakeButtonOf<SmallButton>(parent, name, caption, accessibleName);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return button;
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

QRadioButton* MakeOption(QWidget* parent, std::u16string_view name, std::u16string_view caption) {
    auto* const option = new QRadioButton(ToQString(caption), parent);
    Name(option, name, caption);
    return option;
}

QLabel* MakeLabel(QWidget* parent, std::u16string_view name, std::u16string_view caption,
                  QWidget* control) {
    auto* const label = new QLabel(ToQString(caption), parent);
    Name(label, name, caption);
    label->setBuddy(control);
    control->setAccessibleName(NameOf(caption));
    return label;
}

QWidget* OwnerOfBoxes(QWidget* mainWindow) {
    QWidget* const box = TopBox();
    return box != nullptr ? box : mainWindow;
}

void SetOption(QRadioButton* option, bool value) {
    // An exclusive button that is set refuses to be cleared.
    option->setAutoExclusive(value);
    option->setChecked(value);
    option->setAutoExclusive(true);
}

void MakeOneStop(const std::vector<QRadioButton*>& options) {
    const auto follow = [options] {
        const bool none = std::none_of(options.begin(), options.end(),
                                       [](const QRadioButton* each) { return each->isChecked(); });
        for (QRadioButton* const each : options) {
            each->setFocusPolicy(none || each->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
        }
    };
    for (const QRadioButton* const option : options) {
        QObject::connect(option, &QRadioButton::toggled, option, follow);
    }
}

void OnPress(QRadioButton* option, std::function<void()> operation) {
    const auto handled = std::make_shared<bool>(false);
    QObject::connect(option, &QRadioButton::pressed, option, [handled] { *handled = false; });
    QObject::connect(option, &QRadioButton::toggled, option, [handled, operation](bool set) {
        if (set) {
            *handled = true;
            operation();
        }
    });
    // A click on a button that was set already toggles nothing.
    QObject::connect(option, &QRadioButton::clicked, option,
                     [handled, operation = std::move(operation)] {
                         if (!std::exchange(*handled, false)) {
                             operation();
                         }
                     });
}

void KeepWheelOut(QWidget* control) {
    if (control->focusPolicy() == Qt::WheelFocus) {
        control->setFocusPolicy(Qt::StrongFocus);
    }
    control->installEventFilter(new WheelKeeper(control));
}

void ObeySelection(QComboBox* combo) {
    const QAbstractItemView* const view = combo->view();
    const auto obey = [combo, view] {
        if (!combo->isEnabled() || IsBehindBox(*combo)) {
            return; // no hand could choose here now
        }
        // A hand selects entries on its way, too, and each is then the current one.
        const QModelIndexList selected = view->selectionModel()->selectedIndexes();
        if (selected.size() == 1 && selected.front() != view->currentIndex()) {
            combo->hidePopup();
            combo->setCurrentIndex(selected.front().row());
        }
    };
    QObject::connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, combo, obey,
                     Qt::QueuedConnection);
}

} // namespace vexmarrow

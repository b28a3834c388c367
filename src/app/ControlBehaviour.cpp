// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/ControlBehaviour.h"

#include "app/WaitingBoxes.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>
#include <QItemSelectionModel>
#include <QRadioButton>

#include <algorithm>
#include <memory>
#include <utility>

namespace vexmarrow {
namespace {

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

} // namespace

void SetOption(QRadioButton* option, bool value) {
    // The toolkit refuses to clear the button of an exclusive group that is set.
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
    // A click on a button that is set already emits no toggled().
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
            return; // the user could not choose here with the mouse either
        }
        // The mouse and the keys select entries on their way, too, but make each of them current.
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

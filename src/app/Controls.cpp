// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Controls.h"

#include "app/Strings.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include <memory>

namespace vexmarrow {

void Name(QWidget* control, std::u16string_view name, std::u16string_view accessibleName) {
    control->setObjectName(ToQString(name));
    control->setAccessibleName(ToQString(accessibleName).trimmed());
}

QPushButton* MakeButton(QWidget* parent, std::u16string_view name, std::u16string_view caption) {
    auto* const button = new QPushButton(ToQString(caption), parent);
    Name(button, name, caption);
    return button;
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
    control->setAccessibleName(ToQString(caption).trimmed());
    return label;
}

QWidget* OwnerOfBoxes(QWidget* mainWindow) {
    QWidget* const dialog = QApplication::activeModalWidget();
    return dialog != nullptr ? dialog : mainWindow;
}

void SetOption(QRadioButton* option, bool value) {
    // An exclusive button that is set refuses to be cleared.
    option->setAutoExclusive(value);
    option->setChecked(value);
    option->setAutoExclusive(true);
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

} // namespace vexmarrow

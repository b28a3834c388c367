// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/MenuButton.h"

#include "app/WaitingBoxes.h"

#include <QAccessibleWidget>
#include <QMenu>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace vexmarrow {
namespace {

/// Shows a MenuButton to assistive programs as a button that contains its menu.
class AccessibleMenuButton final : public QAccessibleWidget {
public:
    explicit AccessibleMenuButton(MenuButton* button)
        : QAccessibleWidget(button, QAccessible::Button), button_(button) {}

    int childCount() const override { return 1; }
    QAccessibleInterface* child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(button_->Menu()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return child != nullptr && child->object() == button_->Menu() ? 0 : -1;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction()) {
            button_->click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    MenuButton* button_;
};

QAccessibleInterface* MakeAccessible(const QString& /*className*/, QObject* object) {
    auto* const button = qobject_cast<MenuButton*>(object);
    return button != nullptr ? new AccessibleMenuButton(button) : nullptr;
}

} // namespace

MenuButton::MenuButton(QWidget* parent) : QPushButton(parent), menu_(new QMenu(this)) {
    [[maybe_unused]] static const bool installed =
        (QAccessible::installFactory(MakeAccessible), true);
    connect(this, &QPushButton::clicked, menu_, [this] {
        if (!IsBehindBox(*this)) {
            menu_->popup(mapToGlobal(QPoint(0, -menu_->sizeHint().height())));
        }
    });
}

QAction* MenuButton::Add(const QString& name, const QString& caption) {
    QAction* const action = menu_->addAction(caption);
    action->setObjectName(name);
    return action;
}

QSize MenuButton::sizeHint() const {
    constexpr int kCharacters = 4;
    return {fontMetrics().averageCharWidth() * kCharacters, QPushButton::sizeHint().height()};
}

void MenuButton::paintEvent(QPaintEvent* /*event*/) {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.features |= QStyleOptionButton::HasMenu;
    painter.drawControl(QStyle::CE_PushButton, option);
}

} // namespace vexmarrow

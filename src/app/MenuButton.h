// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPushButton>

class QMenu;

namespace vexmarrow {

/// A narrow button that opens a menu above itself. The toolkit's own menu buttons keep assistive
/// programs waiting until the menu is closed.
class MenuButton final : public QPushButton {
    Q_OBJECT

public:
    explicit MenuButton(QWidget* parent);

    QMenu* Menu() const { return menu_; }

    /// Adds an entry with the object name `name` and returns it.
    QAction* Add(const QString& name, const QString& caption);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QMenu* menu_;
};

} // namespace vexmarrow

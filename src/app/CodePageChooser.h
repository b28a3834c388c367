// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QComboBox>

#include <string_view>

namespace vexmarrow {

/// The drop-down list of code pages, for files without a byte-order mark.
class CodePageChooser final : public QComboBox {
    Q_OBJECT

public:
    explicit CodePageChooser(QWidget* parent);

    /// Shows that the page `name` is used. A page that the list lacks is added under its own name.
    /// Emits nothing.
    void ShowPage(std::u16string_view name);

    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user has chosen a page, perhaps the one that is shown already. For any other page, the
    /// signal is emitted twice.
    void Chosen(const QString& name);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QComboBox>

#include <string_view>

namespace vexmarrow {

/// The list from which the user chooses the code page of text without a mark.
class CodePageChooser final : public QComboBox {
    Q_OBJECT

public:
    explicit CodePageChooser(QWidget* parent);

    /// Shows the page in force; one that is not offered joins the list under its own name. This is
    /// no choice.
    void ShowPage(std::u16string_view name);

    /// In a narrow window the name of the page is shown in part.
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user has chosen a page; it may be the one that was shown before. Comes twice when it is
    /// not.
    void Chosen(const QString& name);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace vexmarrow

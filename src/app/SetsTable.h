// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTableView>

namespace vexmarrow {

class SetList;

/// The table of all replacement sets: their numbers, find texts and replace texts. The selected row
/// is the chosen set. A row that merely has the focus is not chosen.
class SetsTable final : public QTableView {
    Q_OBJECT

public:
    explicit SetsTable(QWidget* parent);

    /// Sets the list that the table shows; call this once. The list must outlive the table.
    void SetSets(const SetList& sets);

    /// Call these before and after each change of the sets; `chosen` is as for ShowChosen. The
    /// focus stays in its row, and the table scrolls to a set that was added.
    void SetsAboutToChange();
    void SetsChanged(int chosen);

    /// Shows that a set, numbered from 0, is chosen; none if -1. Emits nothing.
    void ShowChosen(int set);

    QSize sizeHint() const override;        // five rows
    QSize minimumSizeHint() const override; // two rows

Q_SIGNALS:
    /// The user has chosen a set, numbered from 0, or has cancelled the choice (-1).
    void Chosen(int set);

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    class Model;

    void Arrange();
    QSize SizeOf(int rows) const;

    Model* model_ = nullptr;
    int countBefore_ = 0; // the number of sets before the current change
    int focusBefore_ = -1;
    bool isChangedByProgram_ = false;
};

} // namespace vexmarrow

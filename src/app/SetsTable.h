// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTableView>

namespace vexmarrow {

class SetList;

/// The table of all replacement sets: their numbers, what they find and what they put in its place.
/// One of them can be chosen, which is the selected row. Where a row has the keyboard's focus only,
/// nobody has chosen it.
class SetsTable final : public QTableView {
    Q_OBJECT

public:
    explicit SetsTable(QWidget* parent);

    /// The sets that it shows, which outlive it. To be called once.
    void SetSets(const SetList& sets);

    /// To be called before and after each change of the sets; `chosen` as for ShowChosen. The row
    /// with the focus stays in its place, and a set that was added comes in sight.
    void SetsAboutToChange();
    void SetsChanged(int chosen);

    /// Shows that a set is chosen, numbered from 0, or none for -1. Emits nothing.
    void ShowChosen(int set);

    QSize sizeHint() const override;        // five rows
    QSize minimumSizeHint() const override; // two rows

Q_SIGNALS:
    /// The user has chosen a set, numbered from 0, or has let go the one that was chosen: -1.
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
    int countBefore_ = 0; // of the sets, before the change that goes on
    int focusBefore_ = -1;
    bool isChangedByProgram_ = false;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "sets/SetList.h"

#include <QObject>

#include <array>

class QComboBox;

namespace vexmarrow {

class SetsTable;

/// Shows a SetList in two drop-down lists and a table, and keeps their selections in step: choosing
/// an entry of one of them selects the entry of the same number in the others. Changes of the list
/// choose nothing; a selection ends when its own list loses an entry, and the table's with both.
/// Where nothing is chosen, the drop-down lists show how many sets there are.
class SetsView final : public QObject, private SetListObserver {
    Q_OBJECT

public:
    /// The sets and the controls outlive the view.
    SetsView(SetList& sets, QComboBox* combo1, QComboBox* combo2, SetsTable* table,
             QObject* parent);
    ~SetsView() override;
    SetsView(const SetsView&) = delete;
    SetsView& operator=(const SetsView&) = delete;

Q_SIGNALS:
    /// The sets have changed, and what shows them is up to date.
    void Changed();

private:
    class TextsModel;
    struct Side {
        QComboBox* combo = nullptr;
        TextsModel* model = nullptr;
        int countBefore = 0;
        int selectedBefore = -1;
    };

    void Choose(int set);
    int Chosen() const;
    void ShowCount();
    void SetsAboutToChange() override;
    void SetsChanged() override;

    SetList& sets_;
    std::array<Side, 2> sides_;
    SetsTable* table_;
};

} // namespace vexmarrow

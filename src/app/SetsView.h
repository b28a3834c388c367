// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "sets/SetList.h"

#include <QObject>

#include <array>

class QComboBox;

namespace vexmarrow {

class SetsTable;

/// Shows a SetList in two drop-down lists and a table. Choosing an entry in one of the three
/// selects the entry of the same number in the others. A change of the sets selects nothing. A
/// drop-down list whose texts become fewer loses its selection; the table loses it when both lists
/// do. A drop-down list without a selection shows the number of sets.
class SetsView final : public QObject, private SetListObserver {
    Q_OBJECT

public:
    /// The sets and the controls must outlive the view.
    SetsView(SetList& sets, QComboBox* combo1, QComboBox* combo2, SetsTable* table,
             QObject* parent);
    ~SetsView() override;
    SetsView(const SetsView&) = delete;
    SetsView& operator=(const SetsView&) = delete;

Q_SIGNALS:
    /// The sets have changed, and the controls show them.
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
    int ChosenSet() const;
    void ShowCount();
    void SetsAboutToChange() override;
    void SetsChanged() override;

    SetList& sets_;
    std::array<Side, 2> sides_;
    SetsTable* table_;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "sets/SetList.h"

#include <QObject>

#include <array>

class QComboBox;

namespace vexmarrow {

/// Shows a SetList in two drop-down lists, and keeps their selections in step: choosing an entry of
/// the one selects the entry of the same number in the other. Changes of the list choose nothing;
/// a selection ends when its own list loses an entry.
class SetsView final : public QObject, private SetListObserver {
    Q_OBJECT

public:
    SetsView(SetList& sets, QComboBox* combo1, QComboBox* combo2, QObject* parent);
    ~SetsView() override;
    SetsView(const SetsView&) = delete;
    SetsView& operator=(const SetsView&) = delete;

private:
    class TextsModel;
    struct Side {
        QComboBox* combo = nullptr;
        TextsModel* model = nullptr;
        int countBefore = 0;
        int selectedBefore = -1;
    };

    void SetsAboutToChange() override;
    void SetsChanged() override;

    SetList& sets_;
    std::array<Side, 2> sides_;
};

} // namespace vexmarrow

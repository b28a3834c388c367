// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/SetsView.h"

#include "app/ControlBehaviour.h"
#include "app/SetsTable.h"
#include "app/ShownText.h"
#include "app/WaitingBoxes.h"

#include <QAbstractListModel>
#include <QComboBox>
#include <QSignalBlocker>

#include <algorithm>
#include <functional>

namespace vexmarrow {

class SetsView::TextsModel final : public QAbstractListModel {
public:
    using Texts = std::function<std::span<const std::u16string>()>;

    TextsModel(Texts texts, QObject* parent)
        : QAbstractListModel(parent), texts_(std::move(texts)) {}

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(texts_().size());
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole || !index.isValid()) {
            return {};
        }
        return ShownInOneLine(texts_()[static_cast<std::size_t>(index.row())], kMostInRow);
    }

    void AboutToChange() { beginResetModel(); }
    void Changed() { endResetModel(); }

private:
    Texts texts_;
};

SetsView::SetsView(SetList& sets, QComboBox* combo1, QComboBox* combo2, SetsTable* table,
                   QObject* parent)
    : QObject(parent), sets_(sets), table_(table) {
    sides_[0] = {combo1, new TextsModel([&sets] { return sets.FindTexts(); }, this)};
    sides_[1] = {combo2, new TextsModel([&sets] { return sets.ReplaceTexts(); }, this)};
    for (const Side& side : sides_) {
        side.combo->setModel(side.model);
        side.combo->setCurrentIndex(-1);
        ObeySelection(side.combo);
        connect(side.combo, &QComboBox::currentIndexChanged, this, &SetsView::Choose);
    }
    table_->SetSets(sets);
    connect(table_, &SetsTable::Chosen, this, [this](int set) {
        // No box keeps assistive programs from the table.
        Choose(IsBehindBox(*table_) ? ChosenSet() : set);
    });
    ShowCount();
    sets_.SetObserver(this);
}

SetsView::~SetsView() {
    sets_.SetObserver(nullptr);
}

/// Selects nothing in a list that has no such entry.
void SetsView::Choose(int set) {
    for (const Side& side : sides_) {
        const QSignalBlocker blocker(side.combo);
        side.combo->setCurrentIndex(set);
    }
    table_->ShowChosen(set);
    ShowCount();
}

/// The entry that is selected in both lists or in one of them; -1 if there is none.
int SetsView::ChosenSet() const {
    return std::max(sides_[0].combo->currentIndex(), sides_[1].combo->currentIndex());
}

/// Shows the number of sets in drop-down lists without a selection. Assistive programs do not see a
/// placeholder, so they get it as a description.
void SetsView::ShowCount() {
    const QString count = CountOf(sets_.FindTexts().size(), u"set");
    for (const Side& side : sides_) {
        side.combo->setPlaceholderText(count);
        side.combo->setAccessibleDescription(side.combo->currentIndex() < 0 ? count : QString());
    }
}

void SetsView::SetsAboutToChange() {
    for (Side& side : sides_) {
        side.countBefore = side.model->rowCount();
        side.selectedBefore = side.combo->currentIndex();
        // A drop-down list whose texts change would select its first entry.
        side.combo->blockSignals(true);
        side.model->AboutToChange();
    }
    table_->SetsAboutToChange();
}

void SetsView::SetsChanged() {
    for (Side& side : sides_) {
        side.model->Changed();
        const bool lost = side.model->rowCount() < side.countBefore;
        side.combo->setCurrentIndex(lost ? -1 : side.selectedBefore);
        side.combo->blockSignals(false);
    }
    table_->SetsChanged(ChosenSet());
    ShowCount();
    Q_EMIT Changed();
}

} // namespace vexmarrow

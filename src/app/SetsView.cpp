// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/SetsView.h"

#include "app/Controls.h"
#include "app/Strings.h"

#include <QAbstractListModel>
#include <QComboBox>
#include <QSignalBlocker>

#include <functional>

namespace vexmarrow {
namespace {

/// More than fits in any window; laying out a text of millions takes seconds.
constexpr std::size_t kShownCharacters = 1'000;

} // namespace

/// One of the two lists of texts, as it stands.
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
        return ShownInOneLine(texts_()[static_cast<std::size_t>(index.row())], kShownCharacters);
    }

    void AboutToChange() { beginResetModel(); }
    void Changed() { endResetModel(); }

private:
    Texts texts_;
};

SetsView::SetsView(SetList& sets, QComboBox* combo1, QComboBox* combo2, QObject* parent)
    : QObject(parent), sets_(sets) {
    sides_[0] = {combo1, new TextsModel([&sets] { return sets.FindTexts(); }, this)};
    sides_[1] = {combo2, new TextsModel([&sets] { return sets.ReplaceTexts(); }, this)};
    for (const Side& side : sides_) {
        side.combo->setModel(side.model);
        side.combo->setCurrentIndex(-1);
        ObeySelection(side.combo);
    }
    const auto follow = [](const QComboBox* chosen, QComboBox* other) {
        connect(chosen, &QComboBox::currentIndexChanged, other, [other](int index) {
            const QSignalBlocker blocker(other);
            other->setCurrentIndex(index);
        });
    };
    follow(combo1, combo2);
    follow(combo2, combo1);
    sets_.SetObserver(this);
}

SetsView::~SetsView() {
    sets_.SetObserver(nullptr);
}

void SetsView::SetsAboutToChange() {
    for (Side& side : sides_) {
        side.countBefore = side.model->rowCount();
        side.selectedBefore = side.combo->currentIndex();
        // A drop-down list selects its first entry by itself when its texts change.
        side.combo->blockSignals(true);
        side.model->AboutToChange();
    }
}

void SetsView::SetsChanged() {
    for (Side& side : sides_) {
        side.model->Changed();
        const bool lost = side.model->rowCount() < side.countBefore;
        side.combo->setCurrentIndex(lost ? -1 : side.selectedBefore);
        side.combo->blockSignals(false);
    }
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/SetsTable.h"

#include "app/Colours.h"
#include "app/RowViews.h"
#include "app/ShownText.h"
#include "app/Strings.h"
#include "app/ToolTips.h"
#include "sets/SetList.h"

#include <QAbstractTableModel>
#include <QEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>

#include <algorithm>
#include <array>

namespace vexmarrow {
namespace {

enum Column { Number, Find, Replace, Columns };

} // namespace

class SetsTable::Model final : public QAbstractTableModel {
public:
    Model(const SetList& sets, const QWidget& table, QObject* parent)
        : QAbstractTableModel(parent), sets_(sets), table_(table) {}

    /// The two lists of texts can have different lengths during a change and after an error.
    int rowCount(const QModelIndex& parent = {}) const override {
        const std::size_t rows = std::max(sets_.FindTexts().size(), sets_.ReplaceTexts().size());
        return parent.isValid() ? 0 : static_cast<int>(rows);
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : Columns;
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid()) {
            return {};
        }
        if (index.column() != Number) {
            const auto texts = index.column() == Find ? sets_.FindTexts() : sets_.ReplaceTexts();
            const auto row = static_cast<std::size_t>(index.row());
            return row < texts.size() ? DataOfText(texts[row], role) : QVariant();
        }
        if (role == Qt::TextAlignmentRole) {
            return (Qt::AlignRight | Qt::AlignVCenter).toInt();
        }
        return role == Qt::DisplayRole ? QLocale().toString(index.row() + 1) : QVariant();
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        constexpr std::array<std::u16string_view, Columns> kNames{u"Number", u"Find what",
                                                                  u"Replace with"};
        return role == Qt::DisplayRole && orientation == Qt::Horizontal
                   ? ToQString(kNames.at(static_cast<std::size_t>(section)))
                   : QVariant();
    }

    void AboutToChange() { beginResetModel(); }
    void Changed() { endResetModel(); }

private:
    QVariant DataOfText(const std::u16string& text, int role) const {
        switch (role) {
        case Qt::DisplayRole:
            return text.empty() ? QStringLiteral("(empty)") : ShownInOneLine(text, kMostInRow);
        case Qt::ToolTipRole:
            return text.empty() ? QVariant() : TipOf(text);
        case Qt::ForegroundRole:
            return text.empty() ? QuietColour(table_.palette()) : QVariant();
        default:
            return {};
        }
    }

    const SetList& sets_;
    const QWidget& table_;
};

SetsTable::SetsTable(QWidget* parent) : QTableView(parent) {
    horizontalHeader()->hide();
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false); // Tab leads to the next control
    setWordWrap(false);
    setShowGrid(false);
    Arrange();
}

void SetsTable::SetSets(const SetList& sets) {
    model_ = new Model(sets, *this, this);
    setModel(model_);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    horizontalHeader()->setSectionResizeMode(Number, QHeaderView::Fixed);
    Arrange();
    // Not the current row: the view itself makes a row current when it gets the focus.
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!isChangedByProgram_) {
            const QModelIndexList rows = selectionModel()->selectedRows();
            Q_EMIT Chosen(rows.isEmpty() ? -1 : rows.front().row());
        }
    });
}

void SetsTable::SetsAboutToChange() {
    countBefore_ = model_->rowCount();
    focusBefore_ = currentIndex().row();
    model_->AboutToChange();
}

void SetsTable::SetsChanged(int chosen) {
    model_->Changed();
    Arrange();
    const int count = model_->rowCount();
    selectionModel()->setCurrentIndex(model_->index(std::min(focusBefore_, count - 1), Find),
                                      QItemSelectionModel::NoUpdate);
    ShowChosen(chosen);
    if (count > countBefore_) {
        scrollToBottom();
    }
}

void SetsTable::ShowChosen(int set) {
    const QScopedValueRollback<bool> byProgram(isChangedByProgram_, true);
    const QModelIndex index = model_->index(set, Find);
    if (!index.isValid()) {
        clearSelection();
    } else if (!selectionModel()->isSelected(index)) {
        setCurrentIndex(index);
    }
}

QSize SetsTable::SizeOf(int rows) const {
    constexpr int kCharacters = 20;
    return {fontMetrics().averageCharWidth() * kCharacters,
            rows * RowHeight(*this) + 2 * frameWidth()};
}

QSize SetsTable::sizeHint() const {
    return SizeOf(5);
}

QSize SetsTable::minimumSizeHint() const {
    return SizeOf(2);
}

/// Fits the rows and columns to the font and the number of sets.
void SetsTable::Arrange() {
    verticalHeader()->setDefaultSectionSize(RowHeight(*this));
    if (model_ != nullptr) {
        const QString largest = QLocale().toString(std::max(model_->rowCount(), 1));
        const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
        horizontalHeader()->resizeSection(Number, fontMetrics().horizontalAdvance(largest) +
                                                      2 * margin + 1);
    }
}

void SetsTable::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        Arrange();
        updateGeometry();
    }
}

void SetsTable::keyPressEvent(QKeyEvent* event) {
    QTableView::keyPressEvent(event);
    SelectRowWithFocus(*this, event->key());
}

void SetsTable::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    ShowFocusWithoutRow(*this);
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/FileListModel.h"

#include "app/ShownText.h"
#include "app/ToolTips.h"

#include <climits>

namespace vexmarrow {

FileListModel::FileListModel(FileList& list, QObject* parent)
    : QAbstractListModel(parent), list_(list) {
    list_.SetObserver(this);
}

FileListModel::~FileListModel() {
    list_.SetObserver(nullptr);
}

int FileListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(list_.AnnouncedCount());
}

QVariant FileListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) {
        return {};
    }
    const std::u16string& path = list_.Row(static_cast<std::size_t>(index.row()) + 1);
    return role == Qt::DisplayRole ? ShownInOneLine(path, PATH_MAX) : TipOf(path);
}

QVariant FileListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role == Qt::DisplayRole && orientation == Qt::Horizontal && section == 0) {
        return QStringLiteral("File(s)");
    }
    return {};
}

void FileListModel::RowsAboutToBeAdded(std::size_t first, std::size_t count) {
    beginInsertRows({}, static_cast<int>(first), static_cast<int>(first + count) - 1);
}

void FileListModel::RowsAboutToBeRemoved(std::size_t first, std::size_t count) {
    beginRemoveRows({}, static_cast<int>(first), static_cast<int>(first + count) - 1);
}

void FileListModel::RowChanged(std::size_t row) {
    const QModelIndex changed = index(static_cast<int>(row), 0);
    Q_EMIT dataChanged(changed, changed);
}

} // namespace vexmarrow

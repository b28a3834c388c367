// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "filelist/FileList.h"

#include <QAbstractListModel>

namespace vexmarrow {

/// The toolkit's model of a FileList: one column "File(s)", one row per path.
class FileListModel final : public QAbstractListModel, private FileListObserver {
    Q_OBJECT

public:
    FileListModel(FileList& list, QObject* parent);
    ~FileListModel() override;
    FileListModel(const FileListModel&) = delete;
    FileListModel& operator=(const FileListModel&) = delete;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void RowsAboutToBeAdded(std::size_t first, std::size_t count) override;
    void RowsAdded() override { endInsertRows(); }
    void RowsAboutToBeRemoved(std::size_t first, std::size_t count) override;
    void RowsRemoved() override { endRemoveRows(); }
    void RowChanged(std::size_t row) override;
    void ListAboutToBeReset() override { beginResetModel(); }
    void ListReset() override { endResetModel(); }

    FileList& list_;
};

} // namespace vexmarrow

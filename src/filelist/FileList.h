// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace vexmarrow {

/// Is told before and after each change of a FileList's announced rows, so that a view of the list
/// can follow. Positions count from 0 here.
class FileListObserver {
public:
    virtual ~FileListObserver() = default;
    virtual void RowsAboutToBeAdded(std::size_t first, std::size_t count) = 0;
    virtual void RowsAdded() = 0;
    virtual void RowsAboutToBeRemoved(std::size_t first, std::size_t count) = 0;
    virtual void RowsRemoved() = 0;
    /// The path of a row has changed. There is no call before this change.
    virtual void RowChanged(std::size_t row) = 0;
    /// Many rows change at once. To follow them one by one would be slow.
    virtual void ListAboutToBeReset() = 0;
    virtual void ListReset() = 0;
};

/// The ordered list of input files. Each row holds one path, and several rows may hold the same
/// one. Rows are numbered from 1.
class FileList {
public:
    class Batch;

    std::size_t Count() const { return rows_.size(); }

    /// The number of rows, from the first one on, that the observer knows. It may not yet know the
    /// latest rows of a Batch.
    std::size_t AnnouncedCount() const { return announced_; }

    /// The path of a row. Throws Failure if there is no row `number`.
    const std::u16string& Row(std::size_t number) const;

    /// Appends rows in order.
    void Add(std::vector<std::u16string> paths);

    /// Removes the rows with these numbers, which must ascend. Throws Failure, and removes nothing,
    /// if one of them does not exist. Takes time in proportion to the length of the list, however
    /// many rows are removed.
    void Remove(const std::vector<std::size_t>& numbers);

    /// Removes all rows.
    void Clear();

    /// Exchanges the paths of two rows. Throws Failure if one of them does not exist.
    void Swap(std::size_t number, std::size_t other);

    /// Tells the observer of all rows that it does not know yet.
    void Announce();

    /// Replaces the observer, of which there is at most one. Null removes it.
    void SetObserver(FileListObserver* observer) { observer_ = observer; }

private:
    void Append(std::vector<std::u16string> paths);
    void RemoveRanges(const std::vector<std::size_t>& numbers);

    std::vector<std::u16string> rows_;
    std::size_t announced_ = 0;
    FileListObserver* observer_ = nullptr;
};

/// Adds rows one after another, while the caller yields in between. Each row is in the list at
/// once, but the observer is told of all of them together: when the batch is destroyed, or earlier
/// if something else changes the list. Otherwise a view would lay itself out at each yield.
class FileList::Batch {
public:
    /// The list outlives this object.
    explicit Batch(FileList& list) : list_(list) {}
    ~Batch() { list_.Announce(); }
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

    /// Appends a row, or rows in order.
    void Add(std::u16string path) { list_.rows_.push_back(std::move(path)); }
    void Add(std::vector<std::u16string> paths) { list_.Append(std::move(paths)); }

private:
    FileList& list_;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace vexmarrow {

/// Is told before and after each change of a FileList's announced rows, so that what shows the list
/// can follow. Positions are 0-based here.
class FileListObserver {
public:
    virtual ~FileListObserver() = default;
    virtual void RowsAboutToBeAdded(std::size_t first, std::size_t count) = 0;
    virtual void RowsAdded() = 0;
    virtual void RowsAboutToBeRemoved(std::size_t first, std::size_t count) = 0;
    virtual void RowsRemoved() = 0;
    /// The path of a row has changed; called after the change only.
    virtual void RowChanged(std::size_t row) = 0;
    /// For changes in so many places that following each would be slow.
    virtual void ListAboutToBeReset() = 0;
    virtual void ListReset() = 0;
};

/// The ordered list of input files: each row holds one path. Rows are numbered from 1 and may
/// repeat each other.
class FileList {
public:
    class Adding;

    std::size_t Count() const { return rows_.size(); }

    /// How many rows, from the first one on, the observer has been told of: all of them, but for
    /// the latest while an Adding is at work.
    std::size_t AnnouncedCount() const { return announced_; }

    /// The path of a row. Throws Failure when there is no row of that number.
    const std::u16string& Row(std::size_t number) const;

    /// Appends rows in order.
    void Add(std::vector<std::u16string> paths);

    /// Removes rows, given by ascending numbers; the cost does not grow with their count times the
    /// length of the list. Throws Failure, and removes none, when there is no row of a number.
    void Remove(const std::vector<std::size_t>& numbers);

    /// Removes all rows.
    void Clear();

    /// Exchanges the paths of two rows. Throws Failure when there is no row of a number.
    void Swap(std::size_t number, std::size_t other);

    /// Tells the observer of the rows that an Adding still holds back.
    void Announce();

    /// At most one; null for none.
    void SetObserver(FileListObserver* observer) { observer_ = observer; }

private:
    void Append(std::vector<std::u16string> paths);
    void RemoveRanges(const std::vector<std::size_t>& numbers);

    std::vector<std::u16string> rows_;
    std::size_t announced_ = 0;
    FileListObserver* observer_ = nullptr;
};

/// Adds rows bit by bit, with yields in between. A row is in the list at once, but the observer is
/// told of all of them together: when this object goes, or when something else changes the list
/// before. Otherwise a view would lay itself out at each yield.
class FileList::Adding {
public:
    /// The list outlives this object.
    explicit Adding(FileList& list) : list_(list) {}
    ~Adding() { list_.Announce(); }
    Adding(const Adding&) = delete;
    Adding& operator=(const Adding&) = delete;

    /// Appends a row, or rows in order.
    void Add(std::u16string path) { list_.rows_.push_back(std::move(path)); }
    void Add(std::vector<std::u16string> paths) { list_.Append(std::move(paths)); }

private:
    FileList& list_;
};

} // namespace vexmarrow

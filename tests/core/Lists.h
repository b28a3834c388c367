// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/Core.h"
#include "filelist/FileAdding.h"
#include "filelist/FileList.h"
#include "sets/SetList.h"
#include "sets/SetOperations.h"

namespace vexmarrow::test {

inline Texts RowsOf(const FileList& list) {
    Texts rows;
    for (std::size_t i = 1; i <= list.Count(); ++i) {
        rows.push_back(list.Row(i));
    }
    return rows;
}

/// Follows a list like a view, only by what it is told. At its end it checks that it has the same
/// rows as the list.
class Follower final : public FileListObserver {
public:
    explicit Follower(FileList& list) : list_(list) { list.SetObserver(this); }
    ~Follower() override {
        EXPECT_EQ(rows, RowsOf(list_));
        list_.SetObserver(nullptr);
    }
    Follower(const Follower&) = delete;
    Follower& operator=(const Follower&) = delete;

    Texts rows;
    std::size_t additions = 0; ///< the number of calls that announced new rows

private:
    void RowsAboutToBeAdded(std::size_t first, std::size_t count) override {
        EXPECT_EQ(rows.size(), first);
        EXPECT_EQ(rows.size(), list_.AnnouncedCount());
        coming_ = count;
    }
    void RowsAdded() override {
        ++additions;
        for (; coming_ > 0; --coming_) {
            rows.push_back(list_.Row(rows.size() + 1));
        }
        EXPECT_EQ(rows.size(), list_.AnnouncedCount());
    }
    void RowsAboutToBeRemoved(std::size_t first, std::size_t count) override {
        EXPECT_EQ(rows.size(), list_.AnnouncedCount());
        const auto at = rows.begin() + static_cast<std::ptrdiff_t>(first);
        rows.erase(at, at + static_cast<std::ptrdiff_t>(count));
    }
    void RowsRemoved() override { EXPECT_EQ(rows.size(), list_.AnnouncedCount()); }
    void RowChanged(std::size_t row) override { rows.at(row) = list_.Row(row + 1); }
    void ListAboutToBeReset() override { EXPECT_LE(rows.size(), list_.AnnouncedCount()); }
    void ListReset() override {
        rows = RowsOf(list_);
        EXPECT_EQ(rows.size(), list_.AnnouncedCount());
    }

    FileList& list_;
    std::size_t coming_ = 0;
};

/// The list of files and the list of sets, with the operations that fill them.
struct Lists : Core {
    FileList list;
    SetList sets;
    FileAdding adding{list, desktop, textio};
    SetOperations operations{sets, desktop, writer, textio};

    std::vector<TextPair> Sets() const {
        std::vector<TextPair> all;
        EXPECT_EQ(sets.FindTexts().size(), sets.ReplaceTexts().size());
        for (std::size_t i = 0; i < sets.FindTexts().size(); ++i) {
            all.emplace_back(sets.FindTexts()[i], sets.ReplaceTexts()[i]);
        }
        return all;
    }
};

} // namespace vexmarrow::test

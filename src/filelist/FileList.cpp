// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "filelist/FileList.h"

#include "base/Failure.h"
#include "base/Text.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vexmarrow {
namespace {

/// The greatest number of rows that are removed one range at a time. This keeps the selection and
/// the scroll position of a view, but each range moves all rows after it.
constexpr std::size_t kFewRows = 32;

} // namespace

const std::u16string& FileList::Row(std::size_t number) const {
    if (number < 1 || number > rows_.size()) {
        throw Failure(Concat(u"There is no row ", Decimal(static_cast<long long>(number)),
                             u" in the list, which has ",
                             Decimal(static_cast<long long>(rows_.size())), u" rows."));
    }
    return rows_[number - 1];
}

void FileList::Add(std::vector<std::u16string> paths) {
    Append(std::move(paths));
    Announce();
}

void FileList::Append(std::vector<std::u16string> paths) {
    rows_.insert(rows_.end(), std::make_move_iterator(paths.begin()),
                 std::make_move_iterator(paths.end()));
}

void FileList::Announce() {
    if (announced_ == rows_.size()) {
        return;
    }
    if (observer_ != nullptr) {
        observer_->RowsAboutToBeAdded(announced_, rows_.size() - announced_);
    }
    announced_ = rows_.size();
    if (observer_ != nullptr) {
        observer_->RowsAdded();
    }
}

void FileList::Remove(const std::vector<std::size_t>& numbers) {
    if (!numbers.empty()) {
        Row(numbers.front());
        Row(numbers.back());
    }
    Announce();
    if (numbers.size() <= kFewRows) {
        RemoveRanges(numbers);
        return;
    }
    if (observer_ != nullptr) {
        observer_->ListAboutToBeReset();
    }
    std::vector<std::u16string> kept;
    kept.reserve(rows_.size() - numbers.size());
    auto removed = numbers.begin();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (removed != numbers.end() && *removed == i + 1) {
            ++removed;
        } else {
            kept.push_back(std::move(rows_[i]));
        }
    }
    rows_ = std::move(kept);
    announced_ = rows_.size();
    if (observer_ != nullptr) {
        observer_->ListReset();
    }
}

void FileList::Clear() {
    if (observer_ != nullptr) {
        observer_->ListAboutToBeReset();
    }
    rows_.clear();
    announced_ = 0;
    if (observer_ != nullptr) {
        observer_->ListReset();
    }
}

void FileList::Swap(std::size_t number, std::size_t other) {
    Row(number);
    Row(other);
    Announce();
    std::swap(rows_[number - 1], rows_[other - 1]);
    if (observer_ != nullptr) {
        observer_->RowChanged(number - 1);
        observer_->RowChanged(other - 1);
    }
}

void FileList::RemoveRanges(const std::vector<std::size_t>& numbers) {
    // Goes backwards, so that the numbers of the rows still to be removed stay valid.
    for (std::size_t end = numbers.size(); end > 0;) {
        std::size_t begin = end - 1;
        while (begin > 0 && numbers[begin - 1] + 1 == numbers[begin]) {
            --begin;
        }
        const std::size_t first = numbers[begin] - 1;
        const std::size_t count = end - begin;
        if (observer_ != nullptr) {
            observer_->RowsAboutToBeRemoved(first, count);
        }
        const auto at = rows_.begin() + static_cast<std::ptrdiff_t>(first);
        rows_.erase(at, at + static_cast<std::ptrdiff_t>(count));
        announced_ = rows_.size();
        if (observer_ != nullptr) {
            observer_->RowsRemoved();
        }
        end = begin;
    }
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "sets/SetList.h"

#include "base/Failure.h"
#include "base/Text.h"

#include <algorithm>
#include <utility>

namespace vexmarrow {
namespace {

/// To be called before a change begins: an observer that is told of its beginning must also be told
/// of its end.
void RequireEntry(const std::vector<std::u16string>& texts, std::size_t index) {
    if (index >= texts.size()) {
        throw Failure(Concat(u"There is no set number ", Decimal(static_cast<long long>(index) + 1),
                             u" in the list."));
    }
}

/// Makes sure that `count` more texts can be appended without asking for memory again, so that a
/// change that has been announced cannot fail half-way. Throws std::bad_alloc.
void ReserveMore(std::vector<std::u16string>& texts, std::size_t count) {
    const std::size_t needed = texts.size() + count;
    if (texts.capacity() < needed) {
        texts.reserve(std::max(needed, texts.capacity() * 2));
    }
}

void RemoveAt(std::vector<std::u16string>& texts, std::size_t index) {
    texts.erase(texts.begin() + static_cast<std::ptrdiff_t>(index));
}

} // namespace

std::optional<SetList::Set> SetList::FromText(std::u16string_view text,
                                              std::u16string_view separator) {
    const std::vector<std::u16string_view> parts = Split(text, separator);
    if (parts.size() < 2) {
        return std::nullopt;
    }
    return Set{std::u16string(parts[0]), std::u16string(parts[1])};
}

template <typename Change>
void SetList::Do(Change change) {
    if (observer_ != nullptr) {
        observer_->SetsAboutToChange();
    }
    ++revision_;
    change();
    if (observer_ != nullptr) {
        observer_->SetsChanged();
    }
}

void SetList::Add(std::vector<Set> sets) {
    ReserveMore(find_, sets.size());
    ReserveMore(replace_, sets.size());
    Do([&] {
        for (Set& set : sets) {
            find_.push_back(std::move(set.find));
            replace_.push_back(std::move(set.replace));
        }
    });
}

void SetList::RemoveFindText(std::size_t index) {
    RequireEntry(find_, index);
    Do([&] { RemoveAt(find_, index); });
}

void SetList::RemoveReplaceText(std::size_t index) {
    RequireEntry(replace_, index);
    Do([&] { RemoveAt(replace_, index); });
}

void SetList::ClearFindTexts() {
    Do([&] { find_.clear(); });
}

void SetList::ClearReplaceTexts() {
    Do([&] { replace_.clear(); });
}

} // namespace vexmarrow

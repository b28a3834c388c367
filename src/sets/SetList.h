// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vexmarrow {

/// Is told before and after each change of a SetList, so that a view of the list can follow.
class SetListObserver {
public:
    virtual ~SetListObserver() = default;
    virtual void SetsAboutToChange() = 0;
    virtual void SetsChanged() = 0;
};

/// The replacement sets: a list of find texts and a list of replace texts. The entries with the
/// same index belong together. Nothing is sorted, trimmed or checked for duplicates.
class SetList {
public:
    /// Stands between find text and replace text when the user types a set, and in saved sets.
    static constexpr std::u16string_view kSeparator = u"::";

    std::span<const std::u16string> FindTexts() const { return find_; }
    std::span<const std::u16string> ReplaceTexts() const { return replace_; }

    /// A number that increases with every change. It is never 0.
    std::uint64_t Revision() const { return revision_; }

    struct Set {
        std::u16string find;
        std::u16string replace;
    };

    /// The set in a text: find text, separator, replace text. Text after a second separator is
    /// dropped. Returns nothing if there is no separator.
    static std::optional<Set> FromText(std::u16string_view text, std::u16string_view separator);

    /// Appends several sets in order, or one set.
    void Add(std::vector<Set> sets);
    void Add(std::u16string find, std::u16string replace) {
        Add({{std::move(find), std::move(replace)}});
    }

    /// Removes one entry of one list. Throws Failure if there is no such entry.
    void RemoveFindText(std::size_t index);
    void RemoveReplaceText(std::size_t index);

    void ClearFindTexts();
    void ClearReplaceTexts();

    /// Replaces the observer, of which there is at most one. Null removes it.
    void SetObserver(SetListObserver* observer) { observer_ = observer; }

private:
    template <typename Change>
    void Do(Change change);

    std::vector<std::u16string> find_;
    std::vector<std::u16string> replace_;
    std::uint64_t revision_ = 1;
    SetListObserver* observer_ = nullptr;
};

} // namespace vexmarrow

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

/// Is told before and after each change of a SetList, so that what shows the list can follow.
class SetListObserver {
public:
    virtual ~SetListObserver() = default;
    virtual void SetsAboutToChange() = 0;
    virtual void SetsChanged() = 0;
};

/// The replacement sets: an ordered list of find texts and one of replace texts, entry i of the one
/// going with entry i of the other. Nothing is sorted, trimmed or checked for duplicates.
class SetList {
public:
    /// What stands between find text and replace text where a set is typed or saved.
    static constexpr std::u16string_view kSeparator = u"::";

    std::span<const std::u16string> FindTexts() const { return find_; }
    std::span<const std::u16string> ReplaceTexts() const { return replace_; }

    /// A number that every change raises; never 0.
    std::uint64_t Revision() const { return revision_; }

    /// One find text with its replace text.
    struct Set {
        std::u16string find;
        std::u16string replace;
    };

    /// The set that a text spells: find text, separator, replace text. Text after a second
    /// separator is dropped. Nothing when there is no separator.
    static std::optional<Set> FromText(std::u16string_view text, std::u16string_view separator);

    /// Appends sets in order, or one.
    void Add(std::vector<Set> sets);
    void Add(std::u16string find, std::u16string replace) {
        Add({{std::move(find), std::move(replace)}});
    }

    /// Removes one entry of one list. Throws Failure when there is no entry of that number.
    void RemoveFindText(std::size_t index);
    void RemoveReplaceText(std::size_t index);

    void ClearFindTexts();
    void ClearReplaceTexts();

    /// At most one; null for none.
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

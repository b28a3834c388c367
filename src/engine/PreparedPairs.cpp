// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/PreparedPairs.h"

#include "base/Text.h"
#include "textio/CodePage.h"

#include <utility>

namespace vexmarrow {
namespace {

std::optional<std::vector<BasicReplacementPair<char>>>
BytePairs(const std::vector<ReplacementPair>& pairs, const CodePage& page) {
    std::vector<BasicReplacementPair<char>> all;
    all.reserve(pairs.size());
    for (const ReplacementPair& pair : pairs) {
        std::optional<std::string> find = page.SearchableBytes(pair.find);
        std::optional<std::string> replace = page.SearchableBytes(pair.replace);
        if (!find || !replace) {
            return std::nullopt;
        }
        all.push_back({std::move(*find), std::move(*replace)});
    }
    return all;
}

/// As much of a text as a message needs to say which one is meant.
std::u16string Quoted(std::u16string_view text) {
    constexpr std::size_t kMost = 100;
    return Concat(u"\"", text.substr(0, kMost), text.size() > kMost ? u"..." : u"", u"\"");
}

} // namespace

bool ByteCascade::Apply(View text, std::string& result) const {
    if (!bytes_.Apply(text, result)) {
        return false; // where no bytes are found, no characters are
    }
    if (!several_ || page_.IsExactInBytes(text)) {
        return true;
    }
    std::u16string characters;
    page_.Decode(text, characters);
    std::u16string changed;
    if (!pairs_.OfCharacters().Apply(characters, changed)) {
        return false;
    }
    result.clear();
    page_.Encode(changed, result);
    return true;
}

PreparedPairs::PreparedPairs(std::span<const std::u16string> find,
                             std::span<const std::u16string> replace) {
    for (std::size_t i = 0; i < find.size(); ++i) {
        if (i < replace.size()) {
            pairs_.push_back({find[i], replace[i]});
        } else {
            partnerless_.push_back(
                Concat(u"Find text number ", Decimal(static_cast<long long>(i) + 1), u", ",
                       Quoted(find[i]), u", has no replace text: there are only ",
                       Decimal(static_cast<long long>(replace.size())), u"."));
        }
    }
}

const BasicCascade<char16_t>& PreparedPairs::OfCharacters() {
    if (!ofCharacters_) {
        ofCharacters_.emplace(pairs_);
    }
    return *ofCharacters_;
}

const ByteCascade* PreparedPairs::OfBytes(const AnsiCodePage& ansi) {
    if (!askedForBytes_ || codePage_ != ansi.Revision()) {
        ofBytes_.reset();
        if (auto pairs = BytePairs(pairs_, ansi.Page())) {
            ofBytes_.emplace(ansi.Page(), std::move(*pairs), *this);
        }
        askedForBytes_ = true;
        codePage_ = ansi.Revision();
    }
    return ofBytes_ ? &*ofBytes_ : nullptr;
}

} // namespace vexmarrow

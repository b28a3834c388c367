// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/PreparedPairs.h"

#include "base/Text.h"
#include "base/Utf8.h"
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

/// The beginning of a text, which is enough for a message.
std::u16string Quoted(std::u16string_view text) {
    constexpr std::size_t kMost = 100;
    return Concat(u"\"", text.substr(0, kMost), text.size() > kMost ? u"..." : u"", u"\"");
}

} // namespace

bool ByteCascade::Apply(View text, std::string& result) const {
    if (!bytes_.Apply(text, result)) {
        return false; // no characters would be found either
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

Utf8Cascade::Utf8Cascade(std::vector<BasicReplacementPair<char>> pairs) {
    borders_.set();
    for (const BasicReplacementPair<char>& pair : pairs) {
        for (const char byte : pair.find) {
            if (const auto code = static_cast<unsigned char>(byte); code < borders_.size()) {
                borders_.reset(code);
            }
        }
    }
    bytes_.emplace(std::move(pairs));
}

WideCascade::WideCascade(const std::vector<ReplacementPair>& pairs) {
    for (const ReplacementPair& pair : pairs) {
        pairs_.push_back({WideText(pair.find), WideText(pair.replace)});
    }
}

bool WideCascade::Apply(View text, std::u32string& result) const {
    bool any = false;
    for (const auto& [find, replace] : pairs_) {
        const View before = any ? View(result) : text;
        std::size_t place = find.empty() ? View::npos : before.find(find);
        if (place == View::npos) {
            continue;
        }
        std::u32string after;
        std::size_t copied = 0;
        for (; place != View::npos; place = before.find(find, copied)) {
            after.append(before, copied, place - copied).append(replace);
            copied = place + find.size();
        }
        after.append(before, copied);
        result.swap(after);
        any = true;
    }
    return any;
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

const Utf8Cascade* PreparedPairs::OfUtf8() {
    if (!askedForUtf8_) {
        if (auto pairs = BytePairs(pairs_, *MakeUtf8CodePage())) {
            ofUtf8_.emplace(std::move(*pairs));
        }
        askedForUtf8_ = true;
    }
    return ofUtf8_ ? &*ofUtf8_ : nullptr;
}

const WideCascade& PreparedPairs::OfWideText() {
    if (!ofWideText_) {
        ofWideText_.emplace(pairs_);
    }
    return *ofWideText_;
}

const vcard::Pairs& PreparedPairs::OfCards() {
    if (!ofCards_) {
        ofCards_.emplace(pairs_);
    }
    return ofCards_->Get();
}

} // namespace vexmarrow

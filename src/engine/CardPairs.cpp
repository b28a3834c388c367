// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/CardPairs.h"

#include "base/Utf8.h"
#include "vcard/Units.h"

#include <algorithm>
#include <string>

namespace vexmarrow {
namespace {

constexpr std::size_t kFew = 4;

std::string TextOf(std::u16string_view units) {
    std::string text;
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t unit = units[i];
        if (vcard::IsHighHalf(unit) && i + 1 < units.size() && vcard::IsLowHalf(units[i + 1])) {
            unit = vcard::JoinHalves(unit, units[++i]);
        }
        vcard::AppendUnit(unit, text);
    }
    return text;
}

/// The text with `lineEnd` in place of each CR LF, CR and LF.
std::string WithLineEnds(std::string_view text, std::string_view lineEnd) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' || text[i] == '\n') {
            result.append(lineEnd);
            i += text.substr(i).starts_with("\r\n") ? 1 : 0;
        } else {
            result.push_back(text[i]);
        }
    }
    return result;
}

} // namespace

CardPairs::CardPairs(const std::vector<ReplacementPair>& pairs) {
    pairs_.finder = this;
    finds_.reserve(pairs.size()); // any_ has pointers to the elements
    for (const ReplacementPair& pair : pairs) {
        const std::string replace = TextOf(pair.replace);
        pairs_.list.push_back(
            {TextOf(pair.find), WithLineEnds(replace, "\\n"), WithLineEnds(replace, "\r\n")});
        const std::string& find = pairs_.list.back().find;
        finds_.emplace_back(find);
        const std::string& put = pairs_.list.back().replace;
        const bool isAscii = AsciiLength(find) == find.size() && AsciiLength(put) == put.size();
        pairs_.mayGrowLines = pairs_.mayGrowLines || !isAscii || put.size() > find.size();
        pairs_.areFindsAscii = pairs_.areFindsAscii && AsciiLength(find) == find.size();
        anyHasLineEnd_ = anyHasLineEnd_ || pair.find.find_first_of(u"\r\n") != std::u16string::npos;
    }
    if (finds_.size() > kFew) {
        std::vector<const SingleFinder<char>*> all;
        for (const SingleFinder<char>& find : finds_) {
            if (!find.Text().empty()) {
                all.push_back(&find);
                numbers_.push_back(static_cast<std::size_t>(&find - finds_.data()));
            }
        }
        any_ = MultiFinder<char>(all, GramFrequencies<char>(std::string_view()));
    }
}

std::size_t CardPairs::FirstFound(std::string_view text, std::size_t least) const {
    if (finds_.size() > kFew) {
        return FirstOfMany(text, least);
    }
    for (std::size_t number = least; number < finds_.size(); ++number) {
        if (finds_[number].IsIn(text)) {
            return number;
        }
    }
    return kNone;
}

std::size_t CardPairs::FirstOfMany(std::string_view text, std::size_t least) const {
    std::size_t first = kNone;
    Budget budget(Budget::kUnlimited);
    any_.Collect(text, budget, hits_);
    for (const MultiFinder<char>::Hit& hit : hits_) {
        if (numbers_[hit.number] >= least) {
            first = std::min(first, numbers_[hit.number]);
        }
    }
    return first;
}

void CardPairs::FindPlaces(std::string_view text, std::vector<std::size_t>& places) const {
    if (finds_.size() > kFew && !anyHasLineEnd_) {
        Budget budget(Budget::kUnlimited);
        any_.Collect(text, budget, hits_);
        for (const MultiFinder<char>::Hit& hit : hits_) {
            places.push_back(hit.place);
        }
        return;
    }
    for (const SingleFinder<char>& find : finds_) {
        find.ForEach(text, [&](std::size_t place) {
            places.push_back(place);
            return true;
        });
    }
    if (finds_.size() > 1) {
        std::sort(places.begin(), places.end());
    }
}

} // namespace vexmarrow

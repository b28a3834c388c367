// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/LineChange.h"

#include "base/Failure.h"
#include "vcard/Ascii.h"

#include <algorithm>
#include <iterator>

namespace vexmarrow::vcard {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;
constexpr std::size_t kLongestText = std::size_t{512} * 1024 * 1024; // places have 32 bits

} // namespace

bool LineChange::Apply(const Pairs& pairs, std::size_t first, LinePart part, const RawLine& line,
                       const LineText& text) {
    Begin(line, text);
    for (std::size_t number = first; number != PairFinder::kNone;
         number = pairs.finder->FirstFound(text_, number + 1)) {
        Replace(pairs.list[number], part);
    }
    if (text_ == text.Text()) {
        return false;
    }
    DropFolds();
    return true;
}

void LineChange::Begin(const RawLine& line, const LineText& text) {
    line_ = &line;
    old_ = &text;
    text_ = text.Text();
    stretches_.assign(1, {0, 0});
    colon_ = text.Colon();
    TakeFolds();
}

/// Collects the folds between units. A fold inside a unit goes where the unit goes.
void LineChange::TakeFolds() {
    folds_.clear();
    std::size_t place = 0;
    for (std::size_t i = 0; i < line_->folds.size(); ++i) {
        const std::uint32_t at = line_->folds[i].at;
        while (place < text_.size() &&
               (old_->InJoined(place) < at || ContinuesUnit(text_[place]))) {
            ++place;
        }
        if (old_->InJoined(place) == at) {
            folds_.push_back({static_cast<std::uint32_t>(place), static_cast<std::uint32_t>(i)});
        }
    }
}

/// Finds the occurrences of a pair that are to be replaced, from left to right.
class LineChange::Search {
public:
    Search(const LineChange& change, const Pair& pair, LinePart part)
        : text_(change.text_),
          pair_(pair),
          colon_(change.line_->context.hasHeader ? change.colon_ : kNowhere),
          end_(text_.size()) {
        if (part == LinePart::Fields) {
            end_ = change.colon_ == kNowhere ? 0 : change.colon_;
        } else if (part == LinePart::Values) {
            from_ = change.colon_ == kNowhere ? 0 : change.colon_ + 1;
        }
        const LineContext& context = change.line_->context;
        const bool hasEscapes = context.inCard && context.version == Version::Later;
        escape_ = hasEscapes ? text_.find('\\', from_) : kNowhere;
    }

    bool Next(Occurrence& occurrence) {
        for (;;) {
            occurrence.begin = text_.find(pair_.find, from_);
            occurrence.end = occurrence.begin + pair_.find.size();
            if (occurrence.begin == kNowhere || occurrence.end > end_) {
                return false;
            }
            while (escape_ < occurrence.begin && escape_ + 1 != occurrence.begin) {
                escape_ = text_.find('\\', escape_ + 2);
            }
            if (escape_ < occurrence.begin) { // a backslash and its letter belong together
                from_ = occurrence.begin + 1;
                continue;
            }
            from_ = occurrence.end;
            occurrence.hasColon = occurrence.begin <= colon_ && colon_ < occurrence.end;
            if (!occurrence.hasColon || pair_.replace.find(':') != kNowhere) {
                return true;
            }
        }
    }

private:
    const std::string& text_;
    const Pair& pair_;
    std::size_t colon_;
    std::size_t from_ = 0;
    std::size_t end_;
    std::size_t escape_; // the latest backslash that is not escaped itself
};

/// The text to insert. Its line ends are written as suits the header or the value.
std::string_view LineChange::NewText(const Pair& pair, const Occurrence& occurrence) {
    if (line_->context.coding != Coding::QuotedPrintable) {
        return pair.replace;
    }
    if (occurrence.hasColon) {
        room_.assign(pair.replace, 0, pair.replace.find(':'));
        room_.append(pair.replaceCoded, pair.replaceCoded.find(':'));
        return room_;
    }
    const bool inValue = !line_->begins || occurrence.begin > colon_;
    return inValue ? pair.replaceCoded : pair.replace;
}

/// Replaces all occurrences of a pair.
void LineChange::Replace(const Pair& pair, LinePart part) {
    Search search(*this, pair, part);
    Occurrence occurrence;
    if (!search.Next(occurrence)) {
        return;
    }
    nextText_.clear();
    nextStretches_.clear();
    nextFolds_.clear();
    done_ = 0;
    stretchesDone_ = 0;
    foldsDone_ = 0;
    lastKept_ = kNowhere;
    lastDropped_ = kNowhere;
    std::size_t nextColon = colon_;
    do {
        KeepUpTo(occurrence.begin);
        KeepFoldsAt(occurrence.begin, true);
        while (foldsDone_ < folds_.size() && folds_[foldsDone_].at < occurrence.end) {
            ++foldsDone_;
        }
        const std::string_view newText = NewText(pair, occurrence);
        if (occurrence.hasColon) {
            nextColon = nextText_.size() + newText.find(':');
        } else if (colon_ != kNowhere && occurrence.begin < colon_) {
            nextColon = nextColon + newText.size() - pair.find.size();
        }
        Insert(newText);
        done_ = occurrence.end;
    } while (search.Next(occurrence));
    KeepUpTo(text_.size());
    KeepFoldsAt(text_.size(), false);
    colon_ = nextColon;
    text_.swap(nextText_);
    stretches_.swap(nextStretches_);
    folds_.swap(nextFolds_);
}

void LineChange::Insert(std::string_view newText) {
    if (newText.empty()) {
        return;
    }
    if (nextText_.size() + newText.size() > kLongestText) {
        throw Failure(u"A line would become too long: there is room for 512 MiB.");
    }
    if (nextStretches_.empty() || nextStretches_.back().origin != kNew) {
        nextStretches_.push_back({static_cast<std::uint32_t>(nextText_.size()), kNew});
    }
    nextText_.append(newText);
}

/// Keeps the text up to a place, and the folds before that place.
void LineChange::KeepUpTo(std::size_t end) {
    for (; foldsDone_ < folds_.size() && folds_[foldsDone_].at < end; ++foldsDone_) {
        KeepFold(folds_[foldsDone_], nextText_.size() + (folds_[foldsDone_].at - done_));
    }
    for (std::size_t place = done_; place < end;) {
        while (stretchesDone_ + 1 < stretches_.size() &&
               stretches_[stretchesDone_ + 1].begin <= place) {
            ++stretchesDone_;
        }
        const Stretch& stretch = stretches_[stretchesDone_];
        const bool isLast = stretchesDone_ + 1 == stretches_.size();
        const std::size_t stop =
            isLast ? end : std::min<std::size_t>(end, stretches_[stretchesDone_ + 1].begin);
        const auto inside = static_cast<std::uint32_t>(place - stretch.begin);
        nextStretches_.push_back({static_cast<std::uint32_t>(nextText_.size() + (place - done_)),
                                  stretch.origin == kNew ? kNew : stretch.origin + inside});
        place = stop;
    }
    nextText_.append(text_, done_, end - done_);
    done_ = end;
}

/// Keeps the folds at the place up to which the text is done, unless their blank is replaced.
void LineChange::KeepFoldsAt(std::size_t place, bool isBlankReplaced) {
    for (; foldsDone_ < folds_.size() && folds_[foldsDone_].at == place; ++foldsDone_) {
        const KeptFold& fold = folds_[foldsDone_];
        if (!isBlankReplaced || !line_->folds[fold.number].leavesBlank) {
            KeepFold(fold, nextText_.size());
        }
    }
}

/// Keeps a fold, unless all text between it and the fold before it is gone.
void LineChange::KeepFold(const KeptFold& fold, std::size_t place) {
    const bool isDouble = !nextFolds_.empty() && nextFolds_.back().at == place &&
                          lastKept_ != fold.at && lastDropped_ != fold.at;
    if (isDouble) {
        lastDropped_ = fold.at;
        return;
    }
    lastKept_ = fold.at;
    nextFolds_.push_back({static_cast<std::uint32_t>(place), fold.number});
}

/// Drops a fold that newly begins or ends the line, and soft breaks that a blank newly follows,
/// because some programs would lose that blank.
void LineChange::DropFolds() {
    const auto isBeforeKeptBlank = [&](const KeptFold& fold) {
        const Fold& before = line_->folds[fold.number];
        if (!before.isSoftBreak || fold.at == text_.size() || !IsBlank(text_[fold.at])) {
            return false;
        }
        const std::uint32_t origin = OriginOf(fold.at);
        return origin != kNew && old_->InJoined(origin) != before.at &&
               IsBlank(line_->joined[old_->InJoined(origin)]); // not coded
    };
    std::erase_if(folds_, isBeforeKeptBlank);
    const auto endsNewly = [&] {
        return !folds_.empty() && line_->ends && folds_.back().at == text_.size() &&
               line_->folds[folds_.back().number].at < line_->joined.size();
    };
    if (endsNewly()) {
        folds_.pop_back();
        // More folds at that place may stay, unless a CR would meet the line's own end.
        while (endsNewly() && line_->folds[folds_.back().number].bytes.ends_with('\r')) {
            folds_.pop_back();
        }
    }
    if (!folds_.empty() && line_->begins && folds_.front().at == 0 &&
        line_->folds[folds_.front().number].at > 0) {
        folds_.erase(folds_.begin());
    }
}

std::uint32_t LineChange::OriginOf(std::size_t place) const {
    const auto next =
        std::upper_bound(stretches_.begin(), stretches_.end(), place,
                         [](std::size_t at, const Stretch& stretch) { return at < stretch.begin; });
    const Stretch& stretch = *std::prev(next);
    return stretch.origin == kNew
               ? kNew
               : stretch.origin + static_cast<std::uint32_t>(place - stretch.begin);
}

} // namespace vexmarrow::vcard

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/LineWriter.h"

#include "base/Utf8.h"
#include "vcard/QuotedPrintable.h"
#include "vcard/TextSource.h"

#include <algorithm>

namespace vexmarrow::vcard {
namespace {

constexpr std::size_t kLongestLine = 75;  // in the file's units, without the line end
constexpr std::size_t kLongestCoded = 76; // of quoted-printable, with the `=` of a soft break

} // namespace

void LineWriter::Write(const RawLine& line, const LineText& text, const LineChange& change,
                       const Folding& folding) {
    firstOld_ = 0;
    line_ = &line;
    text_ = &text;
    change_ = &change;
    folding_ = &folding;
    isQuoted_ = line.context.coding == Coding::QuotedPrintable;
    isPlain_ = IsPlain();
    if (isPlain_) {
        return;
    }
    if (!isQuoted_ && line.folds.empty()) {
        WriteJoined(false);
        if (!NeedsBreak(file_.CountUnits(joined_), 0)) {
            out_.swap(joined_);
            return;
        }
    }
    WriteJoined(true);
    WritePhysicalLines();
}

/// Whether the bytes of the line are its text: in most lines nothing is folded or coded.
bool LineWriter::IsPlain() const {
    const std::string& changed = change_->Text();
    return !isQuoted_ && line_->folds.empty() && text_->IsJoined() && charsets_.file->IsUtf8() &&
           line_->context.charset == nullptr && IsUtf8(changed) &&
           !NeedsBreak(file_.CountUnits(changed), 0);
}

/// Whether a place of the changed text is in the value.
bool LineWriter::IsInValue(std::size_t place) const {
    return !line_->begins || place > change_->Colon();
}

void LineWriter::WriteJoined(bool unitByUnit) {
    joined_.clear();
    tokens_.clear();
    folds_.clear();
    expected_.clear();
    nextKept_ = 0;
    nextInner_ = 0;
    valueAt_ = line_->begins ? std::string_view::npos : 0;
    const auto& stretches = change_->Stretches();
    for (std::size_t i = 0; i < stretches.size(); ++i) {
        const std::size_t begin = stretches[i].begin;
        const std::size_t end =
            i + 1 < stretches.size() ? stretches[i + 1].begin : change_->Text().size();
        if (stretches[i].origin == LineChange::kNew) {
            AddUnits(begin, end);
        } else {
            KeepUnits(begin, end, stretches[i].origin, unitByUnit);
        }
    }
    TakeFoldsUpTo(change_->Text().size());
}

/// Adds the kept folds up to a place of the changed text, up to which the line is written.
void LineWriter::TakeFoldsUpTo(std::size_t place) {
    const auto& kept = change_->Folds();
    for (; nextKept_ < kept.size() && kept[nextKept_].at <= place; ++nextKept_) {
        folds_.push_back({static_cast<std::uint32_t>(joined_.size()), kept[nextKept_].number});
    }
}

void LineWriter::KeepUnits(std::size_t begin, std::size_t end, std::uint32_t origin,
                           bool unitByUnit) {
    const std::string_view changed = change_->Text();
    const auto& old = line_->folds;
    for (std::size_t at = begin; at < end;) {
        const std::size_t length = unitByUnit ? UnitAt(changed, at).length : end - at;
        const std::size_t oldAt = origin + (at - begin);
        const std::size_t from = text_->InJoined(oldAt);
        const std::size_t to = text_->InJoined(oldAt + length);
        TakeFoldsUpTo(at);
        while (nextInner_ < old.size() && old[nextInner_].at <= from) {
            ++nextInner_;
        }
        for (; nextInner_ < old.size() && old[nextInner_].at < to; ++nextInner_) {
            folds_.push_back(
                {static_cast<std::uint32_t>(joined_.size() + (old[nextInner_].at - from)),
                 static_cast<std::uint32_t>(nextInner_)});
        }
        tokens_.push_back(
            {static_cast<std::uint32_t>(joined_.size()), static_cast<std::uint32_t>(from)});
        joined_.append(line_->joined, from, to - from);
        expected_.append(changed, at, length);
        if (at == change_->Colon()) {
            valueAt_ = joined_.size();
        }
        at += length;
    }
}

void LineWriter::AddUnits(std::size_t begin, std::size_t end) {
    const std::string_view changed = change_->Text();
    for (std::size_t at = begin; at < end;) {
        const Unit unit = UnitAt(changed, at);
        TakeFoldsUpTo(at);
        AddUnit(unit.value, IsInValue(at));
        if (at == change_->Colon()) {
            valueAt_ = joined_.size();
        }
        at += unit.length;
    }
}

/// Writes a new unit, or question marks for one that the charset lacks.
void LineWriter::AddUnit(char32_t unit, bool inValue) {
    const bool hasOwn = inValue && text_->ValueCharset() != nullptr;
    const Charset& charset = hasOwn ? *text_->ValueCharset() : *charsets_.file;
    bytes_.clear();
    if (charset.Encode(unit, bytes_)) {
        AddEncoded(unit, inValue);
        return;
    }
    constexpr char32_t kLacking = U'?';
    const int count = unit >= 0x10000 && unit < kStray ? 2 : 1; // one for each 16-bit unit
    for (int i = 0; i < count; ++i) {
        bytes_ = "?";
        AddEncoded(kLacking, inValue);
    }
}

/// Writes a new unit whose bytes are in bytes_.
void LineWriter::AddEncoded(char32_t unit, bool inValue) {
    tokens_.push_back({static_cast<std::uint32_t>(joined_.size()), LineChange::kNew});
    AppendUnit(unit, expected_);
    const bool isPrintable = unit >= U' ' && unit <= U'~' && unit != U'=';
    if (!isQuoted_ || !inValue || isPrintable) {
        joined_.append(bytes_);
        return;
    }
    for (const char byte : bytes_) {
        AppendCode(byte, joined_);
    }
}

std::string_view LineWriter::TokenBytes(std::size_t token) const {
    const std::size_t at = tokens_[token].at;
    const std::size_t end = token + 1 < tokens_.size() ? tokens_[token + 1].at : joined_.size();
    return std::string_view(joined_).substr(at, end - at);
}

/// Whether a unit is an old `=` of a coded value that stands for itself.
bool LineWriter::IsLiteralEquals(std::size_t token) const {
    return isQuoted_ && tokens_[token].at >= valueAt_ &&
           tokens_[token].origin != LineChange::kNew && TokenBytes(token) == "=";
}

void LineWriter::WritePhysicalLines() {
    out_.clear();
    physical_.clear();
    breaks_.clear();
    beginsWithBlank_ = false;
    std::size_t fold = 0;
    for (std::size_t token = 0; token < tokens_.size(); ++token) {
        for (; fold < folds_.size() && folds_[fold].at == tokens_[token].at; ++fold) {
            EndPhysicalLine(&folds_[fold], token);
        }
        AddToken(token, fold);
    }
    for (; fold < folds_.size(); ++fold) {
        EndPhysicalLine(&folds_[fold], tokens_.size());
    }
    EndPhysicalLine(nullptr, tokens_.size());
}

/// Adds a unit to the physical line. Folds inside the unit end the line and begin another.
void LineWriter::AddToken(std::size_t token, std::size_t& fold) {
    std::string_view bytes = TokenBytes(token);
    const std::size_t at = tokens_[token].at;
    const bool isNew = tokens_[token].origin == LineChange::kNew;
    const bool inCodedValue = isQuoted_ && at >= valueAt_;
    const bool mayBreakBefore =
        isQuoted_ ? inCodedValue && !IsBlank(bytes.front()) : line_->context.inCard;
    if (!physical_.empty() && mayBreakBefore) {
        breaks_.push_back(physical_.size());
    }
    if (IsLiteralEquals(token) && IsCode(joined_, at)) {
        physical_.append("=3D");
        return;
    }
    if (inCodedValue && isNew && IsBlank(bytes.front()) && physical_.empty() && !out_.empty()) {
        AppendCode(bytes.front(), physical_);
        return;
    }
    std::size_t done = 0;
    for (; fold < folds_.size() && folds_[fold].at < at + bytes.size(); ++fold) {
        physical_.append(bytes.substr(done, folds_[fold].at - at - done));
        done = folds_[fold].at - at;
        EndPhysicalLine(&folds_[fold], 0);
    }
    physical_.append(bytes.substr(done));
}

/// Ends a physical line with a fold, or ends the logical line if `fold` is null. `tokens` is the
/// number of units written by then; 0 inside a unit.
void LineWriter::EndPhysicalLine(const LineChange::KeptFold* fold, std::size_t tokens) {
    const Fold* const old = fold == nullptr ? nullptr : &line_->folds[fold->number];
    const bool isSoft = old != nullptr && old->isSoftBreak;
    if (isQuoted_ && !isSoft && tokens > 0 && (old != nullptr || line_->ends)) {
        ProtectEnd(old == nullptr ? line_->joined.size() : old->at, tokens);
    }
    const std::size_t lastOld = fold == nullptr ? line_->folds.size() : fold->number;
    const std::size_t blank = beginsWithBlank_ ? 1 : 0;
    const std::size_t length = blank + file_.CountUnits(physical_) + (isSoft ? 1 : 0);
    if (NeedsBreak(length, lastOld)) {
        BreakUp(blank, length);
    }
    out_.append(physical_);
    if (old != nullptr) {
        out_.append(old->bytes);
        beginsWithBlank_ = !isSoft && !old->leavesBlank;
    }
    firstOld_ = lastOld + 1;
    physical_.clear();
    breaks_.clear();
}

/// Codes a blank that newly ends a physical line of quoted-printable, because other programs may
/// drop it, and an `=` that would newly be a soft break. `oldEnd` is the place in the old joined
/// line at which the physical line ended.
void LineWriter::ProtectEnd(std::size_t oldEnd, std::size_t tokens) {
    std::size_t token = tokens - 1;
    if (tokens_[token].at < valueAt_ || physical_.empty()) {
        return;
    }
    const Token& last = tokens_[token];
    if (IsBlank(physical_.back())) {
        const bool wasLast = last.origin != LineChange::kNew && last.origin + 1 == oldEnd;
        if (!wasLast && TokenBytes(token).size() == 1) {
            const char blank = physical_.back();
            physical_.pop_back();
            AppendCode(blank, physical_);
            return;
        }
    }
    std::size_t blanks = 0;
    while (token > 0 && blanks + 1 < physical_.size() && IsBlank(TokenBytes(token).front())) {
        ++blanks;
        --token;
    }
    const std::string_view old = line_->joined.substr(0, oldEnd);
    if (IsLiteralEquals(token) && WithoutBlanksAtEnd(old).size() != tokens_[token].origin + 1 &&
        physical_[physical_.size() - 1 - blanks] == '=') {
        physical_.replace(physical_.size() - 1 - blanks, 1, "=3D");
    }
}

/// The length, in the file's units, of the longest old physical line from firstOld_ to `last`.
std::size_t LineWriter::OldLength(std::size_t last) const {
    std::size_t longest = 0;
    for (std::size_t i = firstOld_; i <= last; ++i) {
        const bool isFirst = i == 0;
        const bool isLast = i == line_->folds.size();
        const std::size_t begin = isFirst ? 0 : line_->folds[i - 1].at;
        const std::size_t end = isLast ? line_->joined.size() : line_->folds[i].at;
        std::size_t length = file_.CountUnits(line_->joined.substr(begin, end - begin));
        const bool hasFoldBlank =
            !isFirst && !line_->folds[i - 1].isSoftBreak && !line_->folds[i - 1].leavesBlank;
        length += hasFoldBlank ? 1 : 0;
        length += !isLast && line_->folds[i].isSoftBreak ? 1 : 0;
        const bool isCut = (isFirst && !line_->begins) || (isLast && !line_->ends);
        longest = std::max(longest, isCut ? std::string_view::npos : length);
    }
    return longest;
}

/// Whether a physical line of that length has become too long and may be broken. It consists of the
/// old physical lines from firstOld_ to `lastOld`.
bool LineWriter::NeedsBreak(std::size_t length, std::size_t lastOld) const {
    const std::size_t most = isQuoted_ ? kLongestCoded : kLongestLine;
    if (length <= most || OldLength(lastOld) > most) {
        return false;
    }
    const bool mayFold = line_->context.inCard && line_->context.version == Version::Later &&
                         line_->context.coding != Coding::Base64;
    return isQuoted_ || (mayFold && folding_->isCardFolded());
}

/// Breaks the physical line where it is too long. It begins in `column`; `left` is its length.
void LineWriter::BreakUp(std::size_t column, std::size_t left) {
    const std::string_view whole = physical_;
    const std::size_t most = isQuoted_ ? kLongestCoded : kLongestLine;
    const std::size_t room = most - (isQuoted_ ? 1 : 0); // without the `=` of a soft break
    const std::size_t indent = isQuoted_ ? 0 : 1;
    std::size_t begin = 0;
    broken_.clear();
    std::erase_if(breaks_,
                  [&](std::size_t at) { return isQuoted_ && BeginsLikeFrame(whole.substr(at)); });
    for (auto next = breaks_.cbegin(); next != breaks_.cend() && left > most;) {
        // The last place that still fits, or else the first one.
        std::size_t at = *next;
        std::size_t units = column + file_.CountUnits(whole.substr(begin, at - begin));
        while (++next != breaks_.cend()) {
            const std::size_t more = file_.CountUnits(whole.substr(at, *next - at));
            if (units + more > room) {
                break;
            }
            units += more;
            at = *next;
        }
        broken_.append(whole.substr(begin, at - begin)).append(isQuoted_ ? "=" : "");
        broken_.append(folding_->lineEnd).append(isQuoted_ ? "" : " ");
        begin = at;
        left = left - units + indent;
        column = indent;
    }
    broken_.append(whole.substr(begin));
    physical_.swap(broken_);
}

} // namespace vexmarrow::vcard

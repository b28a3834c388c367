// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/LineReader.h"

#include "vcard/Charset.h"
#include "vcard/FileText.h"
#include "vcard/PlainLines.h"
#include "vcard/Units.h"

#include <algorithm>
#include <utility>

namespace vexmarrow::vcard {
namespace {

using std::string_view;

constexpr std::size_t kLook = std::size_t{64} * 1024;         // bytes to look at first
constexpr std::size_t kSkim = std::size_t{256} * 1024;        // bytes to skim over at once
constexpr std::size_t kMost = std::size_t{5} * 1024 * 1024;   // bytes of a line that is one part
constexpr std::size_t kMostFolds = 300'000;                   // of one part
constexpr std::size_t kLongestHeader = std::size_t{8} * 1024; // that is folded
constexpr std::size_t kReach = std::size_t{64} * 1024; // bytes, to find a quote's end or letters
constexpr std::size_t kBinaryLetters = 200;            // of base64, that make a value one of base64

/// The end of a physical line that ends with a soft break: where its `=` is; npos if it has none.
std::size_t SoftBreakOf(string_view content) {
    content = WithoutBlanksAtEnd(content);
    return content.ends_with('=') ? content.size() - 1 : string_view::npos;
}

/// How many folds are before a place of the joined line.
std::size_t FoldsBefore(std::size_t place, const std::vector<Fold>& folds) {
    const auto end = std::find_if(folds.begin(), folds.end(),
                                  [place](const Fold& fold) { return fold.at >= place; });
    return static_cast<std::size_t>(end - folds.begin());
}

/// Whether two lines say the same of how their values are read.
bool IsSameHeader(const RawLine& one, const RawLine& other) {
    return one.context.hasHeader == other.context.hasHeader &&
           one.header.coding == other.header.coding &&
           one.header.hasCharset == other.header.hasCharset &&
           one.header.charset == other.header.charset;
}

/// Finds a line; one that is too long to be seen wholly ends with the window.
bool FindBeginning(string_view window, bool atEnd, std::size_t from, PhysicalLine& line) {
    return line.Find(window, atEnd, from) || window.size() - from > kMost;
}

} // namespace

/// What joins a physical line with the next one.
LineReader::Link LineReader::LinkBehind(string_view window, bool atEnd, const PhysicalLine& last,
                                        const LineContext& context) {
    if (last.end == last.next) {
        return last.next == window.size() && !atEnd ? Link::Unknown : Link::None;
    }
    if (!context.inCard) {
        return Link::None;
    }
    const bool softly = context.hasHeader && context.coding == Coding::QuotedPrintable &&
                        SoftBreakOf(last.In(window)) != string_view::npos;
    if (last.next == window.size()) {
        return !atEnd ? Link::Unknown : softly ? Link::SoftBreak : Link::None;
    }
    PhysicalLine next;
    const char first = window[last.next];
    if (softly) {
        const bool mayBeFrame = string_view("bevBEV").find(first) != string_view::npos;
        if (mayBeFrame && !FindBeginning(window, atEnd, last.next, next)) {
            return Link::Unknown;
        }
        if (!mayBeFrame || FrameOf(next.In(window)) == Frame::None) {
            return Link::SoftBreak;
        }
    }
    if (IsBlank(first)) {
        return Link::Fold;
    }
    if (context.coding != Coding::Base64 || !IsBase64Letter(first)) {
        return Link::None;
    }
    if (!FindBeginning(window, atEnd, last.next, next)) {
        return Link::Unknown;
    }
    return IsBase64Line(next.In(window)) ? Link::Base64 : Link::None;
}

void LineReader::SkipShown() {
    text_.Skip(shown_);
    position_ += std::exchange(shown_, 0);
}

string_view LineReader::NextPlain(PlainLines& plain) {
    SkipShown();
    if (isWithin_) {
        return {};
    }
    const string_view window = text_.Peek(kSkim);
    shown_ = plain.Skim(window, window.size() < kSkim, position_, wasEmptyAgent_);
    wasBase64_ = wasBase64_ && shown_ == 0;
    return window.substr(0, shown_);
}

bool LineReader::Next(RawLine& line) {
    SkipShown();
    line.context = isWithin_ ? context_ : LineContext();
    line.begins = !isWithin_;
    line.isPassedValue = isWithinPassed_;
    line.followsBase64 = wasBase64_;
    for (std::size_t least = kLook;; least = 2 * window_.size()) {
        window_ = text_.Peek(least);
        const bool atEnd = window_.size() < least;
        if (window_.empty()) {
            return false;
        }
        if (Scan(window_, atEnd, line)) {
            break;
        }
    }
    shown_ = line.raw.size();
    isWithin_ = !line.ends;
    isWithinPassed_ = isWithin_ && line.context.passed != Passed::No;
    context_ = line.context;
    wasBase64_ = line.ends && line.isPassedValue && line.context.coding == Coding::Base64;
    wasEmptyAgent_ =
        line.context.inCard && line.begins && line.ends && IsEmptyAgent(line.joined, line.header);
    return true;
}

void LineReader::Take(const RawLine& line, std::size_t bytes) {
    shown_ = bytes;
    isWithin_ = true;
    context_ = line.context;
    wasBase64_ = line.ends && line.isPassedValue && line.context.coding == Coding::Base64;
    wasEmptyAgent_ = false;
}

bool LineReader::Scan(string_view window, bool atEnd, RawLine& line) {
    line.folds.clear();
    line.isFolded = false;
    line.ends = true;
    line.endSize = 0;
    line.header = Header();
    line.joined = {};
    if (line.isPassedValue) {
        return ScanPassedValue(window, atEnd, line);
    }
    PhysicalLine first;
    if (!FindBeginning(window, atEnd, 0, first)) {
        return false;
    }
    line.context.isFrame = false;
    if (line.begins) {
        const Frame frame = FrameOf(first.In(window));
        if (frame == Frame::Begin || cards_.Any()) {
            line.context.isFrame = frame != Frame::None;
        }
        if (line.context.isFrame && frame != Frame::Version) { // nothing is joined to these
            line.raw = window.substr(0, first.next);
            line.endSize = first.next - first.end;
            line.joined = first.In(window);
            const std::size_t size = line.raw.size();
            Enter(frame, line);
            window_ = text_.Peek(size);
            line.raw = window_.substr(0, size);
            return true;
        }
        line.context.inCard = cards_.Any();
        if (line.context.inCard) {
            line.context.version = cards_.CardVersion();
            line.context.card = cards_.Number();
        }
    }
    return ScanText(window, atEnd, first, kMost, line);
}

void LineReader::Enter(Frame frame, RawLine& line) {
    if (frame == Frame::End) {
        cards_.End();
        return;
    }
    cards_.Begin(text_.Peek(kLookForVersion), wasEmptyAgent_);
    line.joined = {}; // which may have moved
}

/// How far the physical lines of a logical one have been joined.
struct LineReader::Joined {
    PhysicalLine last;
    std::size_t lastAt = 0; // where the last one begins in the joined line
    std::size_t quote = 0;  // up to where the header is within a quote
    bool mayHaveHeader = false;
};

/// Joins the physical lines that belong to the one that begins with `first`, up to about `most`
/// bytes. False if the window ends before that can be told.
bool LineReader::ScanText(string_view window, bool atEnd, const PhysicalLine& first,
                          std::size_t most, RawLine& line) const {
    line.joined = first.In(window);
    Joined joined{first};
    joined.mayHaveHeader = line.begins && line.context.inCard && !line.context.isFrame;
    for (;;) {
        if (joined.mayHaveHeader && !LookForHeader(window, atEnd, most, joined, line)) {
            return false;
        }
        if (line.context.passed != Passed::No && line.begins) {
            return true;
        }
        const Link link = LinkBehind(window, atEnd, joined.last, line.context);
        if (link == Link::None) {
            break;
        }
        PhysicalLine next;
        const std::size_t nextAt = joined.last.next;
        const bool isKnown = link != Link::Unknown && FindBeginning(window, atEnd, nextAt, next);
        const bool isLong = nextAt > most && (!isKnown || next.end > most);
        if (isLong || (line.folds.size() >= kMostFolds && most == kMost)) {
            line.ends = false;
            break;
        }
        if (!isKnown) {
            return false;
        }
        joined.lastAt = Join(window, link, joined.last, next, line);
        joined.last = next;
    }
    line.raw = window.substr(0, line.ends ? joined.last.next : joined.last.end);
    line.endSize = line.raw.size() - joined.last.end;
    if (line.begins && !line.context.inCard) {
        line.header.colon = line.joined.find(':');
    }
    return true;
}

/// Looks for the header in what has been joined so far. False if the window ends before that can be
/// told.
bool LineReader::LookForHeader(string_view window, bool atEnd, std::size_t most, Joined& joined,
                               RawLine& line) const {
    const PhysicalLine& last = joined.last;
    if (joined.lastAt > kLongestHeader && most == kMost) {
        const string_view begin = line.joined.substr(0, kLongestHeader);
        if (ReadHeader(begin, line.context.version).isUnfinished) { // who knows what the value is
            PassWhole(window.substr(0, last.end), line);
        }
        joined.mayHaveHeader = false;
        return true;
    }
    const bool mayEnd =
        last.next == joined.quote ||
        (last.next > joined.quote && last.In(window).find(':') != string_view::npos);
    if (mayEnd && !ReadHeaderOf(window, atEnd, last, joined.quote, line)) {
        return false;
    }
    joined.mayHaveHeader = !line.context.hasHeader;
    return true;
}

/// Has a line not be searched at all.
void LineReader::PassWhole(string_view raw, RawLine& line) {
    line.raw = raw;
    line.ends = false;
    line.isPassedValue = true;
    line.context.passed = Passed::Base64;
    line.context.coding = Coding::Base64;
}

/// Joins the next physical line to those before it, and takes a fold's blank off its front. Returns
/// where it begins in the joined line.
std::size_t LineReader::Join(string_view window, Link link, const PhysicalLine& last,
                             PhysicalLine& next, RawLine& line) {
    if (line.folds.empty()) {
        line.room = line.joined;
    }
    Fold fold;
    std::size_t begin = last.end;
    if (link == Link::SoftBreak) {
        fold.isSoftBreak = true;
        const std::size_t equals = SoftBreakOf(last.In(window));
        begin = last.begin + equals;
        line.room.resize(line.room.size() - (last.end - begin));
    } else {
        line.isFolded = true;
        fold.leavesBlank = line.context.version == Version::TwoOne;
        next.begin += fold.leavesBlank ? 0 : 1;
    }
    fold.at = static_cast<std::uint32_t>(line.room.size());
    fold.bytes = window.substr(begin, next.begin - begin);
    line.folds.push_back(fold);
    line.room.append(next.In(window));
    line.joined = line.room;
    return fold.at;
}

/// Looks for the quote that ends one that has begun in a line, in what is folded to it: `place` is
/// behind it, or stays. False if the window ends before that can be told.
bool LineReader::LookForQuote(string_view window, bool atEnd, PhysicalLine last,
                              const RawLine& line, std::size_t& place) {
    bool isLast = line.joined.ends_with('"'); // what follows the quote is missing
    const std::size_t limit = last.next + kReach;
    while (last.next < limit) {
        if (last.next == window.size() && !atEnd) {
            return false;
        }
        if (last.next == window.size() || last.end == last.next || !IsBlank(window[last.next])) {
            return true;
        }
        if (!FindBeginning(window, atEnd, last.next, last)) {
            return false;
        }
        const string_view more = last.In(window).substr(1); // of a later version: 2.1 has no quotes
        const std::size_t quote = more.find('"');
        if (isLast ? !more.empty() : quote != string_view::npos && quote + 1 < more.size()) {
            place = last.next;
            return true;
        }
        isLast = isLast || quote != string_view::npos;
    }
    return true;
}

/// Reads the header of what has been joined so far, up to the physical line `last`. `quote` gets
/// where the one ends that decides about a quote in it. Where the value is not searched, the line
/// ends for now with the colon.
bool LineReader::ReadHeaderOf(string_view window, bool atEnd, const PhysicalLine& last,
                              std::size_t& quote, RawLine& line) const {
    LineContext& context = line.context;
    line.header = ReadHeader(line.joined, context.version);
    if (line.header.hasOpenQuote) {
        if (!LookForQuote(window, atEnd, last, line, quote)) {
            return false;
        }
        if (quote > last.next) { // the colon that was found may be within it
            line.header = Header();
        }
    }
    if (line.header.colon == Header::kNone) {
        return true;
    }
    context.hasHeader = true;
    context.coding = line.header.coding;
    context.hasCharset =
        line.header.hasCharset && (!hasMark_ || context.coding == Coding::QuotedPrintable);
    context.charset = context.hasCharset ? charsets_.Named(line.header.charset) : nullptr;
    const std::size_t folds = FoldsBefore(line.header.colon + 1, line.folds);
    std::size_t value = line.header.colon + 1; // in the window
    for (std::size_t i = 0; i < folds; ++i) {
        value += line.folds[i].bytes.size();
    }
    if (context.coding == Coding::Base64) {
        context.passed = Passed::Base64;
    } else if (!LookIntoValue(window, atEnd, value, line)) {
        return false;
    }
    if (context.passed == Passed::No && context.hasCharset && context.charset == nullptr) {
        context.passed = Passed::UnknownCharset;
    }
    if (context.passed != Passed::No) {
        line.raw = window.substr(0, value);
        line.joined = line.joined.substr(0, line.header.colon + 1);
        line.folds.resize(folds);
        line.ends = false;
    }
    return true;
}

/// Looks whether a value that does not say so is base64. False if the window ends before that can
/// be told.
bool LineReader::LookIntoValue(string_view window, bool atEnd, std::size_t value, RawLine& line) {
    constexpr string_view kAddress = "data:";
    string_view start = window.substr(value, kAddress.size());
    start = start.substr(0, FindLineEnd(start, 0));
    const bool mayBeAddress = IsWord(start, kAddress.substr(0, start.size()));
    if (!line.header.mayBeBinary && !mayBeAddress) {
        return true;
    }
    constexpr std::size_t kLongestType = 1000; // of an address
    std::string letters;                       // with which the value begins
    PhysicalLine physical;
    for (std::size_t at = value; letters.size() < kLongestType && at - value < kReach;) {
        const bool isWhole = FindBeginning(window, atEnd, at, physical);
        for (const char letter : physical.In(window).substr(0, kLongestType)) {
            if (!IsBlank(letter)) {
                letters.push_back(letter);
            }
        }
        if (letters.size() >= kLongestType) {
            break;
        }
        PhysicalLine next;
        if (!isWhole || (physical.next == window.size() && !atEnd) ||
            !FindBeginning(window, atEnd, physical.next, next)) {
            return false;
        }
        const string_view content = next.In(window);
        if (content.empty() || !(IsBlank(content.front()) || IsBase64Line(content))) {
            break;
        }
        at = physical.next;
    }
    if (mayBeAddress && IsBase64Address(letters)) {
        line.context.passed = Passed::Base64Address;
    } else if (line.header.mayBeBinary && letters.size() >= kBinaryLetters &&
               std::all_of(letters.begin(), letters.begin() + kBinaryLetters, IsBase64Letter)) {
        line.context.passed = Passed::Base64Letters;
    }
    if (line.context.passed != Passed::No) {
        line.context.coding = Coding::Base64;
    }
    return true;
}

/// Shows as much of a value that is not searched as is at hand.
bool LineReader::ScanPassedValue(string_view window, bool atEnd, RawLine& line) {
    PhysicalLine last;
    line.ends = false;
    if (!last.Find(window, atEnd, 0)) { // what may be part of a soft break or line end comes later
        std::size_t size = window.find_last_not_of("=\r \t") + 1;
        if (size == 0 && window.size() <= kMost) {
            return false;
        }
        size = size == 0 ? window.size() : size;
        line.raw = window.substr(0, size);
        return true;
    }
    for (;;) {
        const Link link = LinkBehind(window, atEnd, last, line.context);
        if (link == Link::Unknown) { // what the last line ends with decides, so it comes again
            line.raw = window.substr(0, last.begin > 0 ? last.begin : last.end);
            return last.begin > 0 || window.size() > kMost;
        }
        if (link == Link::None) {
            line.raw = window.substr(0, last.next);
            line.endSize = last.next - last.end;
            line.ends = true;
            return true;
        }
        line.isFolded = line.isFolded || link == Link::Fold;
        PhysicalLine next;
        if (!next.Find(window, atEnd, last.next)) {
            line.raw = window.substr(0, last.next);
            return true;
        }
        last = next;
    }
}

bool LineReader::ReadAgain(string_view raw, const RawLine& before, RawLine& line) const {
    line.begins = before.begins;
    line.folds.clear();
    line.header = Header();
    line.isFolded = false;
    line.ends = true;
    line.endSize = 0;
    line.isPassedValue = false;
    line.context = before.context;
    if (line.begins) {
        line.context = LineContext();
        line.context.inCard = before.context.inCard;
        line.context.version = before.context.version;
        line.context.card = before.context.card;
    }
    PhysicalLine first;
    first.Find(raw, true, 0);
    const Frame frame = FrameOf(first.In(raw));
    const bool isFrame = frame == Frame::Begin || (frame != Frame::None && before.context.inCard);
    if (line.begins && isFrame) {
        return false;
    }
    if (!ScanText(raw, true, first, string_view::npos, line) || line.raw.size() != raw.size()) {
        return false;
    }
    if (before.begins && before.context.passed != Passed::No) {
        return line.header.colon + 1 == line.joined.size() && IsSameHeader(before, line) &&
               (before.context.passed != Passed::Base64Letters || line.header.mayBeBinary);
    }
    return line.context.passed == Passed::No && (before.ends || IsSameHeader(before, line)) &&
           !TouchesNeighbours(before, line);
}

/// Whether a line that was changed would go on with a neighbour that it has not gone on with.
bool LineReader::TouchesNeighbours(const RawLine& before, const RawLine& line) const {
    const auto endsSoftly = [](const RawLine& some) {
        const std::size_t last = some.folds.empty() ? 0 : some.folds.back().at;
        return some.context.coding == Coding::QuotedPrintable &&
               SoftBreakOf(some.joined.substr(last)) != string_view::npos;
    };
    if (before.endSize > 0 && endsSoftly(line) && !endsSoftly(before)) {
        return true;
    }
    if (before.followsBase64 && IsBase64Line(line.joined) && !IsBase64Line(before.joined)) {
        return true;
    }
    if (!line.header.mayBeBinary || before.header.mayBeBinary) {
        return false;
    }
    PhysicalLine next;
    next.Find(window_, true, before.raw.size());
    return IsBase64Line(line.joined.substr(line.header.colon + 1)) &&
           IsBase64Line(next.In(window_));
}

} // namespace vexmarrow::vcard

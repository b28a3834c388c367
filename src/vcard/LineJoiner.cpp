// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/LineJoiner.h"

#include "vcard/Ascii.h"
#include "vcard/Base64.h"
#include "vcard/Charset.h"
#include "vcard/QuotedPrintable.h"

#include <algorithm>

namespace vexmarrow::vcard {
namespace {

using std::string_view;

constexpr std::size_t kMostFolds = 300'000;                   // of one part
constexpr std::size_t kLongestHeader = std::size_t{8} * 1024; // of a header with folds, in bytes
constexpr std::size_t kReach = std::size_t{64} * 1024; // how far to look for a quote or letters
constexpr std::size_t kBinaryLetters = 200;    // base64 letters that make a picture's value base64
constexpr std::size_t kLongestDataType = 1000; // of a `data:` address

} // namespace

bool FindBeginning(const Window& window, std::size_t from, PhysicalLine& line) {
    return line.Find(window, from) || window.text.size() - from > kLongestPart;
}

Link LinkAfter(const Window& window, const PhysicalLine& last, const LineContext& context) {
    const bool isAtWindowEnd = last.next == window.text.size();
    if (last.end == last.next) {
        return isAtWindowEnd && !window.isAtEnd ? Link::Unknown : Link::None;
    }
    if (!context.inCard) {
        return Link::None;
    }
    const bool isSoft = context.hasHeader && context.coding == Coding::QuotedPrintable &&
                        FindSoftBreak(last.In(window.text)) != string_view::npos;
    if (isAtWindowEnd) {
        return !window.isAtEnd ? Link::Unknown : isSoft ? Link::SoftBreak : Link::None;
    }
    PhysicalLine next;
    const char first = window.text[last.next];
    if (isSoft) {
        const bool mayBeFrame = string_view("bevBEV").find(first) != string_view::npos;
        if (mayBeFrame && !FindBeginning(window, last.next, next)) {
            return Link::Unknown;
        }
        if (!mayBeFrame || FrameOf(next.In(window.text)) == Frame::None) {
            return Link::SoftBreak;
        }
    }
    if (IsBlank(first)) {
        return Link::Fold;
    }
    if (context.coding != Coding::Base64 || !IsBase64Letter(first)) {
        return Link::None;
    }
    if (!FindBeginning(window, last.next, next)) {
        return Link::Unknown;
    }
    return IsBase64Line(next.In(window.text)) ? Link::Base64 : Link::None;
}

bool LineJoiner::Join(const PhysicalLine& first) {
    last_ = first;
    line_.joined = first.In(window_.text);
    mayHaveHeader_ = line_.begins && line_.context.inCard && !line_.context.isFrame;
    for (;;) {
        if (mayHaveHeader_ && !LookForHeader()) {
            return false;
        }
        if (line_.context.unsearched != Unsearched::No) {
            return true;
        }
        const Link link = LinkAfter(window_, last_, line_.context);
        if (link == Link::None) {
            break;
        }
        PhysicalLine next;
        const bool isKnown = link != Link::Unknown && FindBeginning(window_, last_.next, next);
        const bool isLong = last_.next > kLongestPart && (!isKnown || next.end > kLongestPart);
        if (hasLimits_ && (isLong || line_.folds.size() >= kMostFolds)) {
            line_.ends = false;
            break;
        }
        if (!isKnown) {
            return false;
        }
        Add(link, next);
    }
    line_.raw = window_.text.substr(0, line_.ends ? last_.next : last_.end);
    line_.endSize = line_.raw.size() - last_.end;
    if (line_.begins && !line_.context.inCard) {
        line_.header.colon = line_.joined.find(':');
    }
    return true;
}

/// Looks for the header in the lines joined so far. False if the window ends before it can be told.
bool LineJoiner::LookForHeader() {
    if (lastAt_ > kLongestHeader && hasLimits_) {
        const string_view begin = line_.joined.substr(0, kLongestHeader);
        if (ReadHeader(begin, line_.context.version).isUnfinished) {
            LeaveUnsearched();
        }
        mayHaveHeader_ = false;
        return true;
    }
    const bool mayEnd =
        last_.next == quotedUpTo_ ||
        (last_.next > quotedUpTo_ && last_.In(window_.text).find(':') != string_view::npos);
    if (mayEnd && !ReadHeaderSoFar()) {
        return false;
    }
    mayHaveHeader_ = !line_.context.hasHeader;
    return true;
}

/// Leaves the whole line unsearched: nobody knows how its value is written.
void LineJoiner::LeaveUnsearched() {
    line_.raw = window_.text.substr(0, last_.end);
    line_.ends = false;
    line_.isUnsearched = true;
    line_.context.unsearched = Unsearched::Base64;
    line_.context.coding = Coding::Base64;
}

/// Joins the next physical line to those before it, and removes a fold's blank from its front.
void LineJoiner::Add(Link link, PhysicalLine& next) {
    if (line_.folds.empty()) {
        line_.room = line_.joined;
    }
    Fold fold;
    std::size_t begin = last_.end;
    if (link == Link::SoftBreak) {
        fold.isSoftBreak = true;
        begin = last_.begin + FindSoftBreak(last_.In(window_.text));
        line_.room.resize(line_.room.size() - (last_.end - begin));
    } else {
        line_.isFolded = true;
        fold.leavesBlank = line_.context.version == Version::TwoOne;
        next.begin += fold.leavesBlank ? 0 : 1;
    }
    fold.at = static_cast<std::uint32_t>(line_.room.size());
    fold.bytes = window_.text.substr(begin, next.begin - begin);
    line_.folds.push_back(fold);
    line_.room.append(next.In(window_.text));
    line_.joined = line_.room;
    lastAt_ = fold.at;
    last_ = next;
}

/// Looks in the physical lines that follow for the quote that closes an open one, and remembers
/// where it was found. False if the window ends before that can be told.
bool LineJoiner::FindClosingQuote() {
    bool isLast = line_.joined.ends_with('"'); // a quote whose next byte is still missing
    PhysicalLine line = last_;
    const std::size_t limit = line.next + kReach;
    while (line.next < limit) {
        const bool isAtWindowEnd = line.next == window_.text.size();
        if (isAtWindowEnd && !window_.isAtEnd) {
            return false;
        }
        if (isAtWindowEnd || line.end == line.next || !IsBlank(window_.text[line.next])) {
            return true;
        }
        if (!FindBeginning(window_, line.next, line)) {
            return false;
        }
        // The blank belongs to the fold: 2.1, where it is text, has no quotes.
        const string_view more = line.In(window_.text).substr(1);
        const std::size_t quote = more.find('"');
        if (isLast ? !more.empty() : quote != string_view::npos && quote + 1 < more.size()) {
            quotedUpTo_ = line.next;
            return true;
        }
        isLast = isLast || quote != string_view::npos;
    }
    return true;
}

/// Reads the header in the lines joined so far. False if the window ends before it can be told.
bool LineJoiner::ReadHeaderSoFar() {
    line_.header = ReadHeader(line_.joined, line_.context.version);
    if (line_.header.hasOpenQuote) {
        if (!FindClosingQuote()) {
            return false;
        }
        if (quotedUpTo_ > last_.next) { // the colon that was found may be inside the quotes
            line_.header = Header();
        }
    }
    if (line_.header.colon == Header::kNone) {
        return true;
    }
    TakeHeader();
    LineContext& context = line_.context;
    const std::size_t value = line_.header.colon + 1; // its place in the joined line
    if (context.coding == Coding::Base64) {
        context.unsearched = Unsearched::Base64;
    } else if (!LookIntoValue(line_.InRaw(value))) {
        return false;
    }
    if (context.unsearched == Unsearched::No && context.hasCharset && context.charset == nullptr) {
        context.unsearched = Unsearched::UnknownCharset;
    }
    if (context.unsearched != Unsearched::No) {
        line_.raw = window_.text;
        line_.CutAt(value);
    }
    return true;
}

void LineJoiner::TakeHeader() {
    LineContext& context = line_.context;
    const Header& header = line_.header;
    context.hasHeader = true;
    context.coding = header.coding;
    context.hasCharset =
        header.hasCharset && (!hasMark_ || context.coding == Coding::QuotedPrintable);
    context.charset = context.hasCharset ? charsets_.Named(header.charset) : nullptr;
}

/// Looks whether a value that does not say so is base64. `value` is where it begins in the window.
/// False if the window ends before that can be told.
bool LineJoiner::LookIntoValue(std::size_t value) {
    constexpr string_view kAddress = "data:";
    string_view start = window_.text.substr(value, kAddress.size());
    start = start.substr(0, FindLineEnd(start, 0));
    const bool mayBeBinary = line_.header.mayBeBinary;
    const bool mayBeAddress = IsWord(start, kAddress.substr(0, start.size()));
    std::string letters;
    if (!mayBeBinary && !mayBeAddress) {
        return true;
    }
    if (!CollectLetters(value, letters)) {
        return false;
    }
    Unsearched& unsearched = line_.context.unsearched;
    if (mayBeAddress && IsBase64DataAddress(letters)) {
        unsearched = Unsearched::Base64DataAddress;
    } else if (mayBeBinary && letters.size() >= kBinaryLetters &&
               std::all_of(letters.begin(), letters.begin() + kBinaryLetters, IsBase64Letter)) {
        unsearched = Unsearched::Base64Letters;
    }
    if (unsearched != Unsearched::No) {
        line_.context.coding = Coding::Base64;
    }
    return true;
}

/// Collects the bytes that a value begins with, without blanks and folds: as many as decide whether
/// it is base64. False if the window ends before there are enough.
bool LineJoiner::CollectLetters(std::size_t value, std::string& letters) const {
    PhysicalLine line;
    for (std::size_t at = value; letters.size() < kLongestDataType && at - value < kReach;) {
        const bool isWhole = FindBeginning(window_, at, line);
        for (const char letter : line.In(window_.text).substr(0, kLongestDataType)) {
            if (!IsBlank(letter)) {
                letters.push_back(letter);
            }
        }
        if (letters.size() >= kLongestDataType) {
            break;
        }
        PhysicalLine next;
        if (!isWhole || (line.next == window_.text.size() && !window_.isAtEnd) ||
            !FindBeginning(window_, line.next, next)) {
            return false;
        }
        const string_view content = next.In(window_.text);
        if (!BeginsWithBlank(content) && !IsBase64Line(content)) {
            break;
        }
        at = line.next;
    }
    return true;
}

} // namespace vexmarrow::vcard

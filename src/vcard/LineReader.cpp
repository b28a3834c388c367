// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/LineReader.h"

#include "vcard/Base64.h"
#include "vcard/Charset.h"
#include "vcard/LineJoiner.h"
#include "vcard/LineSkimmer.h"
#include "vcard/QuotedPrintable.h"
#include "vcard/TextSource.h"

#include <utility>

namespace vexmarrow::vcard {
namespace {

using std::string_view;

constexpr std::size_t kLook = std::size_t{64} * 1024;  // bytes to look at first
constexpr std::size_t kSkim = std::size_t{256} * 1024; // bytes to skim over at once

/// Whether two lines say the same about how their values are read.
bool IsSameHeader(const RawLine& one, const RawLine& other) {
    return one.context.hasHeader == other.context.hasHeader &&
           one.header.coding == other.header.coding &&
           one.header.hasCharset == other.header.hasCharset &&
           one.header.charset == other.header.charset;
}

/// Reads as much of a value that is not searched as the window holds. False if that is too little.
bool ScanUnsearched(const Window& window, RawLine& line) {
    const string_view text = window.text;
    PhysicalLine last;
    line.ends = false;
    if (!last.Find(window, 0)) { // the last bytes may belong to a soft break or a line end
        std::size_t size = text.find_last_not_of("=\r \t") + 1;
        if (size == 0 && text.size() <= kLongestPart) {
            return false;
        }
        size = size == 0 ? text.size() : size;
        line.raw = text.substr(0, size);
        return true;
    }
    for (;;) {
        const Link link = LinkAfter(window, last, line.context);
        if (link == Link::Unknown) { // the end of the last line decides, so it comes again
            line.raw = text.substr(0, last.begin > 0 ? last.begin : last.end);
            return last.begin > 0 || text.size() > kLongestPart;
        }
        if (link == Link::None) {
            line.raw = text.substr(0, last.next);
            line.endSize = last.next - last.end;
            line.ends = true;
            return true;
        }
        line.isFolded = line.isFolded || link == Link::Fold;
        PhysicalLine next;
        if (!next.Find(window, last.next)) {
            line.raw = text.substr(0, last.next);
            return true;
        }
        last = next;
    }
}

} // namespace

void LineReader::SkipShown() {
    text_.Skip(shown_);
    position_ += std::exchange(shown_, 0);
}

string_view LineReader::Skim(LineSkimmer& skimmer) {
    SkipShown();
    if (isWithin_) {
        return {};
    }
    const string_view window = text_.Peek(kSkim);
    shown_ = skimmer.Skim({window, window.size() < kSkim}, position_, wasEmptyAgent_);
    wasBase64_ = wasBase64_ && shown_ == 0;
    return window.substr(0, shown_);
}

bool LineReader::Next(RawLine& line) {
    SkipShown();
    line.context = isWithin_ ? context_ : LineContext();
    line.begins = !isWithin_;
    line.isUnsearched = isWithinUnsearched_;
    line.followsBase64 = wasBase64_;
    for (std::size_t least = kLook;; least = 2 * window_.size()) {
        window_ = text_.Peek(least);
        if (window_.empty()) {
            return false;
        }
        if (Scan({window_, window_.size() < least}, line)) {
            break;
        }
    }
    shown_ = line.raw.size();
    isWithin_ = !line.ends;
    isWithinUnsearched_ = isWithin_ && line.context.unsearched != Unsearched::No;
    context_ = line.context;
    wasBase64_ = line.ends && line.isUnsearched && line.context.coding == Coding::Base64;
    wasEmptyAgent_ =
        line.context.inCard && line.begins && line.ends && IsEmptyAgent(line.joined, line.header);
    return true;
}

void LineReader::ContinueAfter(const RawLine& part) {
    shown_ = part.raw.size();
    isWithin_ = true;
    context_ = part.context;
}

/// Reads the line or part at the beginning of the window. False if the window ends too early.
bool LineReader::Scan(const Window& window, RawLine& line) {
    line.Clear();
    if (line.isUnsearched) {
        return ScanUnsearched(window, line);
    }
    PhysicalLine first;
    if (!FindBeginning(window, 0, first)) {
        return false;
    }
    if (line.begins) {
        const Frame frame = FrameOf(first.In(window.text));
        line.context.isFrame = IsFrame(frame, cards_.Any());
        if (line.context.isFrame && frame != Frame::Version) { // nothing is joined to these
            TakeFrame(frame, first, line);
            return true;
        }
        line.context.inCard = cards_.Any();
        if (line.context.inCard) {
            line.context.version = cards_.CardVersion();
            line.context.card = cards_.Number();
        }
    }
    return LineJoiner(window, true, charsets_, hasMark_, line).Join(first);
}

/// Begins or ends a card with a physical line.
void LineReader::TakeFrame(Frame frame, const PhysicalLine& first, RawLine& line) {
    line.endSize = first.next - first.end;
    if (frame == Frame::End) {
        cards_.End();
    } else {
        window_ = text_.Peek(kLookForVersion);
        cards_.Begin(window_, wasEmptyAgent_);
    }
    line.raw = window_.substr(0, first.next);
}

bool LineReader::ReadAgain(string_view raw, const RawLine& before, RawLine& line) const {
    line.Clear();
    line.begins = before.begins;
    line.isUnsearched = false;
    line.context = before.context;
    if (line.begins) {
        line.context = LineContext();
        line.context.inCard = before.context.inCard;
        line.context.version = before.context.version;
        line.context.card = before.context.card;
    }
    const Window window{raw, true};
    PhysicalLine first;
    first.Find(window, 0);
    if (line.begins && IsFrame(FrameOf(first.In(raw)), before.context.inCard)) {
        return false;
    }
    if (!LineJoiner(window, false, charsets_, hasMark_, line).Join(first) ||
        line.raw.size() != raw.size()) {
        return false;
    }
    if (before.begins && before.context.unsearched != Unsearched::No) {
        return line.header.colon + 1 == line.joined.size() && IsSameHeader(before, line) &&
               (before.context.unsearched != Unsearched::Base64Letters || line.header.mayBeBinary);
    }
    return line.context.unsearched == Unsearched::No &&
           (before.ends || IsSameHeader(before, line)) && !TouchesNeighbours(before, line);
}

/// Whether a line that was changed would newly be joined to the line before it or after it.
bool LineReader::TouchesNeighbours(const RawLine& before, const RawLine& line) const {
    const auto endsSoftly = [](const RawLine& some) {
        const std::size_t last = some.folds.empty() ? 0 : some.folds.back().at;
        return some.context.coding == Coding::QuotedPrintable &&
               FindSoftBreak(some.joined.substr(last)) != string_view::npos;
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
    next.Find({window_, true}, before.raw.size());
    return IsBase64Line(line.joined.substr(line.header.colon + 1)) &&
           IsBase64Line(next.In(window_));
}

} // namespace vexmarrow::vcard

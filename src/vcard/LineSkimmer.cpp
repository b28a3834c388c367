// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/LineSkimmer.h"

#include "vcard/Header.h"
#include "vcard/QuotedPrintable.h"

#include <array>
#include <bit>
#include <cstring>
#include <utility>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace vexmarrow::vcard {
namespace {

constexpr std::size_t kBlock = 64;
constexpr std::size_t kNone = std::string_view::npos;

/// Whether an `=` may begin a code or a soft break. The window may end too early to be sure.
bool MayBeCode(std::string_view window, std::size_t equals) {
    const std::string_view next = window.substr(equals + 1, 2);
    return next.size() < 2 || IsBlank(next[0]) || next[0] == '\r' || next[0] == '\n' ||
           IsCode(window, equals);
}

/// Whether a header may say that its value is coded or in a charset of its own. `header` may reach
/// beyond the header.
bool MayBeEncoded(std::string_view header) {
    for (std::size_t at = 0; at < header.size(); ++at) {
        if (header[at] == ';' || header[at] == '=') {
            constexpr std::size_t kEnough = 64; // for the longest word and some blanks
            const std::string_view word = WithoutBlanks(header.substr(at + 1, kEnough));
            if (word.empty() || BeginsWithWord(word, "charset") ||
                BeginsWithWord(word, "quoted-printable")) {
                return true;
            }
        }
    }
    return header.find('"') != kNone; // a quote, which may hide the colon or a word
}

/// Where certain bytes are in a block: bit n stands for byte n.
struct Marks {
    std::uint64_t lineEnds = 0; // CR and LF
    std::uint64_t colons = 0;
    std::uint64_t special = 0; // `=`, and bytes outside ASCII

#if defined(__SSE2__)
    explicit Marks(const char* block) {
        constexpr std::size_t kVector = sizeof(__m128i);
        for (std::size_t at = 0; at < kBlock; at += kVector) {
            const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + at));
            const auto bits = [at](__m128i equal) {
                return std::uint64_t{static_cast<std::uint32_t>(_mm_movemask_epi8(equal))} << at;
            };
            const auto where = [&bytes](char byte) {
                return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(byte));
            };
            lineEnds |= bits(_mm_or_si128(where('\r'), where('\n')));
            colons |= bits(where(':'));
            special |= bits(_mm_or_si128(where('='), bytes)); // the highest bits count
        }
    }
#else
    explicit Marks(const char* block) {
        for (std::size_t at = 0; at < kBlock; ++at) {
            const char byte = block[at];
            const std::uint64_t bit = std::uint64_t{1} << at;
            lineEnds |= byte == '\r' || byte == '\n' ? bit : 0;
            colons |= byte == ':' ? bit : 0;
            special |= byte == '=' || static_cast<unsigned char>(byte) >= 0x80 ? bit : 0;
        }
    }
#endif
};

Marks MarksAt(std::string_view window, std::size_t place) {
    if (place + kBlock <= window.size()) {
        return Marks(window.data() + place);
    }
    std::array<char, kBlock> block{};
    std::memcpy(block.data(), window.data() + place, window.size() - place);
    return Marks(block.data());
}

} // namespace

/// The line that is being skimmed over.
struct LineSkimmer::Line {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t colon = kNone;  // the last colon so far; it may be in an earlier line
    std::size_t before = kNone; // where the line before begins, if it is no frame line
    bool isAfterEmptyAgent = false;
    bool isLooked = false; // its header was looked at, so that mayBeEncoded is known
    bool mayBeEncoded = false;

    bool HasColon() const { return colon != kNone && colon >= begin; }

    /// Notes the last one of some colons in the block at a place; there may be none.
    void SeeColons(std::size_t block, std::uint64_t colons) {
        if (colons != 0) {
            colon = block + kBlock - 1 - static_cast<unsigned>(std::countl_zero(colons));
        }
    }
};

std::size_t LineSkimmer::Skim(const Window& window, std::uint64_t position,
                              bool& isAfterEmptyAgent) {
    const std::string_view text = window.text;
    if (!FindPlaces(text, position)) {
        return 0;
    }
    const std::size_t searched = searchedTo_ - position;
    Line line;
    line.isAfterEmptyAgent = isAfterEmptyAgent;
    for (std::size_t block = 0; block < searched; block += kBlock) {
        const Marks marks = MarksAt(text, block);
        for (std::uint64_t left = marks.lineEnds | marks.special; left != 0; left &= left - 1) {
            const auto bit = static_cast<unsigned>(std::countr_zero(left));
            const std::size_t at = block + bit;
            if (at >= searched) {
                return Leave(text, line, false, isAfterEmptyAgent);
            }
            if (at < line.begin) { // the rest of a line end
                continue;
            }
            line.SeeColons(block, marks.colons & ((std::uint64_t{1} << bit) - 1));
            line.end = at;
            const bool isPlain = (marks.special >> bit & 1U) != 0
                                     ? IsPlainAt(text, line, at)
                                     : EndsPlain(window, position, line);
            if (!isPlain) { // a line without a colon may continue the line before it
                return Leave(text, line, line.HasColon(), isAfterEmptyAgent);
            }
        }
        line.SeeColons(block, marks.colons);
    }
    const bool isAll = window.isAtEnd && line.begin == text.size();
    return Leave(text, line, isAll, isAfterEmptyAgent);
}

/// Ends the plain lines before `line`. If it is not known whether `line` continues the line before
/// it, that line is no plain line either.
std::size_t LineSkimmer::Leave(std::string_view window, Line line, bool isKnown,
                               bool& isAfterEmptyAgent) {
    if (!isKnown && cards_.Any() && line.before != kNone) {
        line.begin = std::exchange(line.before, kNone);
    }
    if (line.begin > 0) {
        isAfterEmptyAgent = IsAfterEmptyAgent(window, line);
    }
    return line.begin;
}

bool LineSkimmer::IsAfterEmptyAgent(std::string_view window, const Line& line) {
    if (line.before == kNone) {
        return line.begin == 0 && line.isAfterEmptyAgent;
    }
    PhysicalLine before;
    before.Find({window, true}, line.before);
    const std::string_view content = before.In(window);
    return cards_.Any() && IsEmptyAgent(content, ReadHeader(content, cards_.CardVersion()));
}

/// Looks for the find texts in the whole lines of a window, unless that has been done. False if
/// there is no whole line.
bool LineSkimmer::FindPlaces(std::string_view window, std::uint64_t position) {
    if (position < searchedTo_) {
        return true;
    }
    constexpr std::size_t kMost = std::size_t{256} * 1024; // limits how many places there are
    const std::size_t end = window.substr(0, kMost).find_last_of("\r\n");
    if (end == kNone) {
        return false;
    }
    places_.clear();
    nextPlace_ = 0;
    if (finder_ != nullptr) {
        finder_->FindPlaces(window.substr(0, end), places_);
    }
    searchedFrom_ = position;
    searchedTo_ = position + end + 1;
    return true;
}

/// Whether a line is still plain although it has an `=` or a byte outside ASCII at a place.
bool LineSkimmer::IsPlainAt(std::string_view window, Line& line, std::size_t at) const {
    const bool isEquals = window[at] == '=';
    if (!isEquals && !inBytes_) {
        return false;
    }
    if (!cards_.Any() || (isEquals ? !MayBeCode(window, at) : hasMark_)) {
        return true;
    }
    if (!line.HasColon()) {
        return isEquals; // an `=` means nothing before the value
    }
    if (!line.isLooked) {
        line.isLooked = true;
        line.mayBeEncoded = MayBeEncoded(window.substr(line.begin, line.colon + 1 - line.begin));
    }
    return !line.mayBeEncoded;
}

/// Ends a line and moves on to the next one. Does nothing and returns false if it is not plain.
bool LineSkimmer::EndsPlain(const Window& window, std::uint64_t position, Line& line) {
    const std::string_view text = window.text;
    const std::string_view rest = text.substr(line.end, kLongestLineEnd);
    const std::size_t next = line.end + LengthOfLineEnd(rest);
    const bool isSeen = window.isAtEnd || (rest.size() == kLongestLineEnd && next < text.size());
    const std::string_view content = text.substr(line.begin, line.end - line.begin);
    const bool mayGoOn = cards_.Any() && !line.HasColon() && !content.empty();
    if (!isSeen || (mayGoOn && line.before != kNone)) {
        return false;
    }
    const std::size_t shift = position - searchedFrom_; // added to places in the window
    while (nextPlace_ < places_.size() && places_[nextPlace_] < shift + line.begin) {
        ++nextPlace_;
    }
    if (nextPlace_ < places_.size() && places_[nextPlace_] < shift + line.end) {
        return false;
    }
    const Frame frame = FrameOf(content);
    if (frame == Frame::Begin) {
        if (!window.isAtEnd && text.size() - line.begin < kLookForVersion) {
            return false;
        }
        cards_.Begin(text.substr(line.begin), IsAfterEmptyAgent(text, line));
    } else if (cards_.Any()) {
        if (frame == Frame::End) {
            cards_.End();
        } else if (next < text.size() && IsBlank(text[next])) {
            return false;
        }
    }
    line.before = frame == Frame::None ? line.begin : kNone;
    line.begin = next;
    line.isLooked = false;
    return true;
}

} // namespace vexmarrow::vcard

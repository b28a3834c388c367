// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/LineDecoder.h"

#include "base/Utf8.h"
#include "vcard/QuotedPrintable.h"

#include <algorithm>

namespace vexmarrow::vcard {
namespace {

bool HasCode(std::string_view value) {
    for (std::size_t at = value.find('='); at != std::string_view::npos;
         at = value.find('=', at + 1)) {
        if (IsCode(value, at)) {
            return true;
        }
    }
    return false;
}

bool IsAscii(std::string_view bytes) {
    return AsciiLength(bytes) == bytes.size();
}

/// UTF-8 without the part of a character or of a code that may be at its end.
std::string_view WithoutTornUnit(std::string_view bytes) {
    const std::size_t code = bytes.find('=', bytes.size() - std::min<std::size_t>(bytes.size(), 2));
    bytes = bytes.substr(0, code);
    const TextStretch stretch = MeasureUtf8(bytes, bytes.size(), true);
    return bytes.substr(0, stretch.bytes);
}

/// Where the value begins in a line or in a part of one.
std::size_t BeginOfValue(const RawLine& line) {
    const bool hasColon = line.header.colon != Header::kNone;
    return !line.begins ? 0 : hasColon ? line.header.colon + 1 : line.joined.size();
}

} // namespace

void LineDecoder::Shorten(RawLine& line) {
    constexpr std::size_t kMore = 64;
    constexpr std::size_t kLongestUnit = 4; // where bytes do not tell where units begin
    const std::string_view joined = line.joined;
    const bool tellsUnits = line.context.charset == nullptr || line.context.charset->IsUtf8();
    std::size_t left = (kMostUnits + kMore) * (tellsUnits ? 1 : kLongestUnit);
    if (joined.size() <= left) {
        return;
    }
    const bool isQuoted = line.context.coding == Coding::QuotedPrintable;
    const std::size_t value = BeginOfValue(line);
    for (std::size_t at = 0; at < joined.size();) {
        const bool isCode = isQuoted && at >= value && IsCode(joined, at);
        const bool continues = ContinuesUnit(isCode ? ByteOfCode(joined, at) : joined[at]);
        if ((!continues || !tellsUnits) && left-- == 0) {
            line.CutAt(at);
            return;
        }
        at += isCode ? 3 : 1;
    }
}

void LineDecoder::Decode(const RawLine& line, LineText& text, std::size_t most) {
    most_ = most;
    const std::string_view joined = line.joined;
    const std::size_t value = BeginOfValue(line);
    const bool isQuoted = line.context.coding == Coding::QuotedPrintable;
    text.joined_ = joined;
    text.valueCharset_ = line.context.charset;
    const bool isUtf8 =
        charsets_.file->IsUtf8() && (text.valueCharset_ == nullptr || text.valueCharset_->IsUtf8());
    text.isJoined_ = !(isQuoted && HasCode(joined.substr(value))) &&
                     (IsAscii(joined) || (isUtf8 && IsUtf8(joined)));
    text.isLocated_ = text.isJoined_;
    needsPlaces_ = false;
    if (isQuoted && (!text.isJoined_ || text.valueCharset_ == nullptr)) {
        Uncode(joined, value);
        if (text.valueCharset_ == nullptr) {
            text.valueCharset_ = CharsetOfCoded(line.ends);
        }
    }
    const std::size_t colon = line.header.colon;
    text.colon_ = colon < joined.size() ? colon : std::string_view::npos;
    if (!text.isJoined_) {
        if (isQuoted && IsAllUtf8(joined.substr(0, value), text)) {
            text.decoded_.text.assign(joined, 0, value).append(bytes_);
        } else {
            Locate(line, text);
        }
    }
}

void LineDecoder::Cut(RawLine& line, LineText& text) {
    std::size_t size = LengthOfUnits(text.Text(), kMostUnits);
    // If the bytes were cut inside the line, they may have been cut inside a unit.
    constexpr std::size_t kUncertain = 16;
    if (!line.ends && line.context.unsearched == Unsearched::No &&
        text.Text().size() - size < kUncertain && size > kUncertain) {
        size -= kUncertain;
        while (ContinuesUnit(text.Text()[size])) {
            --size;
        }
    }
    if (size < text.Text().size()) {
        Locate(line, text);
        line.CutAt(text.InJoined(size));
        text.joined_ = line.joined;
        text.decoded_.text.resize(std::min(size, text.decoded_.text.size()));
        text.decoded_.from.resize(text.decoded_.text.size());
    }
}

/// Whether the text of a coded line is the bytes of its header and those that its codes stand for.
bool LineDecoder::IsAllUtf8(std::string_view header, const LineText& text) const {
    return text.valueCharset_ != nullptr && text.valueCharset_->IsUtf8() && rawRuns_.size() == 1 &&
           IsUtf8(bytes_) && (IsAscii(header) || (charsets_.file->IsUtf8() && IsUtf8(header)));
}

void LineDecoder::Locate(const RawLine& line, LineText& text) {
    if (text.isLocated_) {
        return;
    }
    const std::string_view joined = line.joined;
    const std::size_t value = BeginOfValue(line);
    text.decoded_.Begin(most_);
    charsets_.file->Decode(joined.substr(0, value), 0, text.decoded_);
    if (text.colon_ != std::string_view::npos) {
        text.colon_ = text.decoded_.text.size() - 1;
    }
    if (line.context.coding == Coding::QuotedPrintable) {
        needsPlaces_ = true;
        Uncode(joined, value);
        DecodeCoded(joined, text);
    } else {
        const Charset* const charset = text.valueCharset_;
        (charset != nullptr ? charset : charsets_.file)
            ->Decode(joined.substr(value), value, text.decoded_);
    }
    text.isLocated_ = true;
}

/// Decodes a value from quoted-printable to bytes.
void LineDecoder::Uncode(std::string_view joined, std::size_t value) {
    bytes_.clear();
    places_.clear();
    rawRuns_.clear();
    for (std::size_t at = value; at < joined.size();) {
        const std::size_t equals = std::min(joined.find('=', at), joined.size());
        AddBytes(joined.substr(at, equals - at), at);
        at = equals;
        if (IsCode(joined, at)) {
            bytes_.push_back(ByteOfCode(joined, at));
            if (needsPlaces_) {
                places_.push_back(static_cast<std::uint32_t>(at));
            }
            at += 3;
        } else if (at < joined.size()) {
            AddBytes(joined.substr(at, 1), at);
            ++at;
        }
    }
    places_.push_back(static_cast<std::uint32_t>(joined.size()));
    rawRuns_.push_back({bytes_.size(), joined.size(), joined.size()});
}

/// Adds bytes of a value that are not coded.
void LineDecoder::AddBytes(std::string_view bytes, std::size_t place) {
    const auto add = [&](std::size_t begin, std::size_t end) {
        bytes_.append(bytes, begin, end - begin);
        for (std::size_t at = begin; needsPlaces_ && at < end; ++at) {
            places_.push_back(static_cast<std::uint32_t>(place + at));
        }
    };
    if (!charsets_.hasMark) {
        add(0, bytes.size());
        return;
    }
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t ascii = AsciiLength(bytes.substr(at));
        add(at, at + ascii);
        at += ascii;
        const std::size_t begin = at;
        while (at < bytes.size() && static_cast<unsigned char>(bytes[at]) >= 0x80) {
            ++at;
        }
        if (at > begin) {
            rawRuns_.push_back({bytes_.size(), place + begin, place + at});
        }
    }
}

/// The charset of coded bytes whose line names none.
const Charset* LineDecoder::CharsetOfCoded(bool isWhole) const {
    if (IsAscii(bytes_)) {
        return charsets_.hasMark ? charsets_.utf8 : charsets_.file;
    }
    std::size_t begin = 0;
    for (const RawRun& raw : rawRuns_) {
        std::string_view run = std::string_view(bytes_).substr(begin, raw.at - begin);
        if (!isWhole && &raw == &rawRuns_.back()) {
            run = WithoutTornUnit(run);
        }
        if (!IsUtf8(run)) {
            return charsets_.page;
        }
        begin = raw.at;
    }
    return charsets_.utf8;
}

void LineDecoder::DecodeCoded(std::string_view joined, LineText& text) {
    DecodedText& decoded = text.decoded_;
    std::size_t begin = 0;
    for (const RawRun& raw : rawRuns_) {
        const std::string_view run = std::string_view(bytes_).substr(begin, raw.at - begin);
        run_.Begin(decoded.room);
        text.valueCharset_->Decode(run, begin, run_);
        decoded.text.append(run_.text);
        decoded.room = run_.room;
        for (const std::uint32_t byte : run_.from) {
            decoded.from.push_back(places_[byte]);
        }
        charsets_.file->Decode(joined.substr(raw.begin, raw.end - raw.begin), raw.begin, decoded);
        begin = raw.at;
    }
}

} // namespace vexmarrow::vcard

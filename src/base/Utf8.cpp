// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace vexmarrow {
namespace {

constexpr bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

constexpr bool IsContinuation(std::uint8_t byte) {
    return (byte & 0xC0U) == 0x80;
}

/// What must follow a lead byte: how many bytes, and the range of the first of them. The range
/// rules out overlong forms, surrogates and code points above U+10FFFF.
struct Lead {
    std::uint8_t following = 0; // 0 if the byte is no lead byte
    std::uint8_t low = 0x80;
    std::uint8_t high = 0xBF;
};

constexpr Lead LeadOf(std::uint8_t byte) {
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {1, 0x80, 0xBF};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {2, static_cast<std::uint8_t>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<std::uint8_t>(byte == 0xED ? 0x9F : 0xBF)};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {3, static_cast<std::uint8_t>(byte == 0xF0 ? 0x90 : 0x80),
                static_cast<std::uint8_t>(byte == 0xF4 ? 0x8F : 0xBF)};
    }
    return {};
}

/// A character of several bytes, or a maximal ill-formed part.
struct Part {
    std::size_t length = 1;
    bool whole = false;
    bool open = false; // ill-formed only because the bytes end here
    char32_t point = 0;

    std::size_t Units() const { return !whole ? length : length == 4 ? 2 : 1; }
};

/// The part that begins at `at` with a byte that is not ASCII.
Part PartAt(std::string_view bytes, std::size_t at) {
    const auto byteAt = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    const Lead lead = LeadOf(byteAt(at));
    Part part;
    part.point = byteAt(at) & (0x3FU >> lead.following);
    std::uint8_t low = lead.low;
    std::uint8_t high = lead.high;
    while (part.length <= lead.following) {
        if (at + part.length == bytes.size()) {
            part.open = true;
            return part;
        }
        const std::uint8_t byte = byteAt(at + part.length);
        if (byte < low || byte > high) {
            return part;
        }
        part.point = (part.point << 6) | (byte & 0x3FU);
        ++part.length;
        low = 0x80;
        high = 0xBF;
    }
    part.whole = lead.following > 0;
    return part;
}

/// Whether the first byte alone is surely an ill-formed part. This quick test suffices for most
/// bytes of texts in other encodings.
bool IsLone(std::string_view bytes) {
    const auto first = static_cast<std::uint8_t>(bytes[0]);
    return first < 0xC2 || first > 0xF4 ||
           (bytes.size() > 1 && !IsContinuation(static_cast<std::uint8_t>(bytes[1])));
}

/// The number of ASCII characters at the beginning of `units`. Most text is ASCII, so this looks
/// at four words at a time.
template <typename Unit>
std::size_t AsciiRun(std::basic_string_view<Unit> units) {
    constexpr std::size_t kStep = 32 / sizeof(Unit);
    constexpr std::uint64_t kNotAscii = sizeof(Unit) == 1   ? 0x8080'8080'8080'8080U
                                        : sizeof(Unit) == 2 ? 0xFF80'FF80'FF80'FF80U
                                                            : 0xFFFF'FF80'FFFF'FF80U;
    std::size_t run = 0;
    for (; run + kStep <= units.size(); run += kStep) {
        std::array<std::uint64_t, 4> words{};
        std::memcpy(words.data(), units.data() + run, sizeof(words));
        if (((words[0] | words[1] | words[2] | words[3]) & kNotAscii) != 0) {
            break;
        }
    }
    while (run < units.size() && std::make_unsigned_t<Unit>(units[run]) < 0x80) {
        ++run;
    }
    return run;
}

constexpr std::size_t kBlock = 128; // bytes that are checked together

/// Measures a block of well-formed UTF-8 at the beginning of `bytes`. Gives nothing if they are
/// fewer than a block or if any of them is ill-formed. Compilers vectorise the loop as long as it
/// works on nothing but bytes.
TextStretch WholeBlock(std::string_view bytes) {
    constexpr std::size_t kBefore = 3; // the distance from a character's first byte to its last
    if (bytes.size() < kBlock) {
        return {};
    }
    // The last character may go on after the block, so it is left out unless it is ASCII.
    std::size_t end = kBlock;
    while (end > kBlock - kBefore && IsContinuation(static_cast<std::uint8_t>(bytes[end - 1]))) {
        --end;
    }
    end = static_cast<std::uint8_t>(bytes[end - 1]) >= 0x80 ? end - 1 : end;

    std::array<std::uint8_t, kBefore + kBlock> block{};
    std::memcpy(block.data() + kBefore, bytes.data(), end);
    const std::uint8_t* const at = block.data() + kBefore;
    std::uint8_t wrong = 0;
    std::uint8_t units = 0; // never more than kBlock
    for (std::ptrdiff_t i = 0; i < static_cast<std::ptrdiff_t>(kBlock); ++i) {
        const std::uint8_t byte = at[i];
        const std::uint8_t before = at[i - 1];
        const bool follows = IsContinuation(byte);
        const bool must = (before >= 0xC0) | (at[i - 2] >= 0xE0) | (at[i - 3] >= 0xF0);
        // Overlong forms, surrogates, and code points above U+10FFFF.
        const bool never = (byte == 0xC0) | (byte == 0xC1) | (byte >= 0xF5) |
                           ((before == 0xE0) & (byte < 0xA0)) |
                           ((before == 0xED) & (byte >= 0xA0)) |
                           ((before == 0xF0) & (byte < 0x90)) | ((before == 0xF4) & (byte >= 0x90));
        wrong |= static_cast<std::uint8_t>((follows != must) | never);
        const auto one = static_cast<std::uint8_t>(!follows);
        const auto another = static_cast<std::uint8_t>(byte >= 0xF0);
        units = static_cast<std::uint8_t>(units + one + another);
    }
    const std::size_t filling = kBlock - end; // zeros, which were counted as characters
    return wrong != 0 ? TextStretch() : TextStretch{end, units - filling};
}

/// Appends the characters of `bytes` to `out`. For each maximal ill-formed part, `malformed(part,
/// out, end)` writes at most one unit per byte at `end` and returns the new end.
template <typename Unit, typename OnMalformed>
void Decode(std::string_view bytes, std::basic_string<Unit>& out, OnMalformed malformed) {
    std::size_t end = out.size();
    out.resize(end + bytes.size()); // a character never has more units than bytes
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t run = AsciiRun(bytes.substr(at));
        std::copy_n(bytes.data() + at, run, out.data() + end);
        at += run;
        end += run;
        while (at < bytes.size() && static_cast<std::uint8_t>(bytes[at]) >= 0x80) {
            const Part part = PartAt(bytes, at);
            if (!part.whole) {
                end = malformed(bytes.substr(at, part.length), out, end);
            } else if (part.point < 0x10000) {
                out[end++] = static_cast<Unit>(part.point);
            } else {
                out[end++] = static_cast<Unit>(0xD7C0 + (part.point >> 10));
                out[end++] = static_cast<Unit>(0xDC00 + (part.point & 0x3FF));
            }
            at += part.length;
        }
    }
    out.resize(end);
}

/// The stray byte b is kStray + b. In 16-bit units, that is a lone low surrogate.
template <typename Unit>
constexpr char32_t kStray = sizeof(Unit) == 2 ? 0xDC00 : kStrayByte;

/// Writes each byte of an ill-formed part as a stray byte.
template <typename Unit>
std::size_t KeepBytes(std::string_view part, std::basic_string<Unit>& out, std::size_t end) {
    for (const char byte : part) {
        out[end++] = static_cast<Unit>(kStray<Unit> + static_cast<std::uint8_t>(byte));
    }
    return end;
}

void AppendPoint(char32_t point, std::string& out) {
    const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (point < 0x80) {
        put(point);
    } else if (point < 0x800) {
        put(0xC0 | (point >> 6));
        put(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        put(0xE0 | (point >> 12));
        put(0x80 | ((point >> 6) & 0x3F));
        put(0x80 | (point & 0x3F));
    } else {
        put(0xF0 | (point >> 18));
        put(0x80 | ((point >> 12) & 0x3F));
        put(0x80 | ((point >> 6) & 0x3F));
        put(0x80 | (point & 0x3F));
    }
}

/// Appends the bytes of `text`. `lone(unit)` handles each lone surrogate that stands for no byte.
template <typename Unit, typename OnLone>
void Encode(std::basic_string_view<Unit> text, std::string& bytes, OnLone lone) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t run = AsciiRun(text.substr(i));
        const std::size_t end = bytes.size();
        bytes.resize(end + run);
        std::copy_n(text.data() + i, run, bytes.data() + end);
        i += run;
        for (; i < text.size() && text[i] >= 0x80; ++i) {
            const char32_t unit = text[i];
            if (IsHighSurrogate(unit) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
                ++i;
                AppendPoint(0x10000 + ((unit - 0xD800) << 10) + (text[i] - 0xDC00U), bytes);
            } else if (unit >= kStray<Unit> + 0x80 && unit <= kStray<Unit> + 0xFF) {
                bytes.push_back(static_cast<char>(unit - kStray<Unit>));
            } else if (IsHighSurrogate(unit) || IsLowSurrogate(unit)) {
                lone(unit);
            } else {
                AppendPoint(unit, bytes);
            }
        }
    }
}

} // namespace

std::u16string TextFromUtf8(std::string_view bytes) {
    std::u16string text;
    Decode(bytes, text, [](std::string_view, std::u16string& out, std::size_t end) {
        out[end] = u'\uFFFD';
        return end + 1;
    });
    return text;
}

std::u16string TextFromNativeName(std::string_view bytes) {
    std::u16string text;
    Decode(bytes, text, KeepBytes<char16_t>);
    return text;
}

std::string NativeName(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    Encode(text, bytes, [&](char32_t unit) { AppendPoint(unit, bytes); });
    return bytes;
}

void DecodeUtf8(std::string_view bytes, std::u16string& text) {
    Decode(bytes, text, KeepBytes<char16_t>);
}

void EncodeUtf8(std::u16string_view text, std::string& bytes, char substitute) {
    Encode(text, bytes, [&](char32_t) { bytes.push_back(substitute); });
}

std::u32string WideText(std::u16string_view text) {
    std::u32string wide(text.begin(), text.end());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isSecondHalf = i > 0 && IsHighSurrogate(text[i - 1]);
        if (text[i] >= 0xDC80 && text[i] <= 0xDCFF && !isSecondHalf) {
            wide[i] = kStrayByte + (text[i] - 0xDC00U);
        }
    }
    return wide;
}

void DecodeUtf8(std::string_view bytes, std::u32string& text) {
    Decode(bytes, text, KeepBytes<char32_t>);
}

void EncodeUtf8(std::u32string_view text, std::string& bytes, char substitute) {
    Encode(text, bytes, [&](char32_t) { bytes.push_back(substitute); });
}

bool IsUtf8(std::string_view bytes) {
    for (std::size_t at = AsciiRun(bytes); at < bytes.size(); at += AsciiRun(bytes.substr(at))) {
        if (const std::size_t block = WholeBlock(bytes.substr(at)).bytes; block > 0) {
            at += block;
        } else if (const Part part = PartAt(bytes, at); part.whole) {
            at += part.length;
        } else {
            return false;
        }
    }
    return true;
}

std::string_view WellFormedUtf8(std::string_view bytes, std::string& room) {
    if (IsUtf8(bytes)) {
        return bytes;
    }
    room.clear();
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t run = AsciiRun(bytes.substr(at));
        room.append(bytes, at, run);
        at += run;
        while (at < bytes.size() && static_cast<std::uint8_t>(bytes[at]) >= 0x80) {
            const Part part = PartAt(bytes, at);
            room.append(part.whole ? bytes.substr(at, part.length) : "\xEF\xBF\xBD");
            at += part.length;
        }
    }
    return room;
}

std::size_t AsciiLength(std::string_view bytes) {
    return AsciiRun(bytes);
}

TextStretch MeasureUtf8(std::string_view bytes, std::size_t most, bool more) {
    TextStretch stretch;
    const auto take = [&](std::size_t length, std::size_t units) {
        stretch.bytes += length;
        stretch.units += units;
    };
    std::size_t nextBlock = 0; // before this place, no block needs to be tried
    while (stretch.bytes < bytes.size() && stretch.units < most) {
        const std::string_view rest = bytes.substr(stretch.bytes);
        const std::size_t room = most - stretch.units;
        if (static_cast<std::uint8_t>(rest[0]) < 0x80) {
            const std::size_t run = AsciiRun(rest.substr(0, room));
            take(run, run);
            continue;
        }
        if (stretch.bytes >= nextBlock) {
            if (const TextStretch block = WholeBlock(rest.substr(0, room)); block.bytes > 0) {
                take(block.bytes, block.units);
                continue;
            }
            nextBlock = stretch.bytes + kBlock;
        }
        if (IsLone(rest)) {
            take(1, 1);
            continue;
        }
        const Part part = PartAt(rest, 0);
        if (part.open && more) {
            break;
        }
        if (!part.whole && part.length > room) { // ill-formed bytes may be separated
            take(room, room);
        } else {
            take(part.length, part.Units());
        }
    }
    return stretch;
}

} // namespace vexmarrow

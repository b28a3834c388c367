// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Utf8.h"

#include <cstddef>
#include <cstdint>

namespace vexmarrow {
namespace {

constexpr bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// What a lead byte asks for: how many bytes follow, and the range of the first of them (the range
/// is what rules out overlong forms, surrogates and code points above U+10FFFF).
struct Lead {
    int following = 0; // 0: not a lead byte
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

void AppendCodePoint(char32_t point, std::u16string& out) {
    if (point < 0x10000) {
        out.push_back(static_cast<char16_t>(point));
    } else {
        out.push_back(static_cast<char16_t>(0xD7C0 + (point >> 10)));
        out.push_back(static_cast<char16_t>(0xDC00 + (point & 0x3FF)));
    }
}

/// Decodes `bytes`; `malformed(part)` appends what a maximal ill-formed part becomes.
template <typename OnMalformed>
std::u16string Decode(std::string_view bytes, OnMalformed malformed) {
    std::u16string out;
    out.reserve(bytes.size());
    const auto byteAt = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::uint8_t first = byteAt(at);
        if (first < 0x80) {
            out.push_back(first);
            ++at;
            continue;
        }
        const Lead lead = LeadOf(first);
        char32_t point = first & (0x3FU >> lead.following);
        std::size_t length = 1;
        std::uint8_t low = lead.low;
        std::uint8_t high = lead.high;
        bool whole = lead.following > 0;
        for (int i = 0; i < lead.following; ++i) {
            if (at + length >= bytes.size() || byteAt(at + length) < low ||
                byteAt(at + length) > high) {
                whole = false;
                break;
            }
            point = (point << 6) | (byteAt(at + length) & 0x3FU);
            ++length;
            low = 0x80;
            high = 0xBF;
        }
        if (whole) {
            AppendCodePoint(point, out);
        } else {
            malformed(bytes.substr(at, length), out);
        }
        at += length;
    }
    return out;
}

void AppendUtf8(char32_t point, std::string& out) {
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

} // namespace

std::u16string TextFromUtf8(std::string_view bytes) {
    return Decode(bytes, [](std::string_view, std::u16string& out) { out.push_back(u'\uFFFD'); });
}

std::u16string TextFromNativeName(std::string_view bytes) {
    return Decode(bytes, [](std::string_view part, std::u16string& out) {
        for (const char byte : part) {
            out.push_back(static_cast<char16_t>(0xDC00 + static_cast<std::uint8_t>(byte)));
        }
    });
}

std::string NativeName(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        if (IsHighSurrogate(unit) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
            AppendUtf8(0x10000 + ((unit - 0xD800) << 10) + (text[i + 1] - 0xDC00U), bytes);
            ++i;
        } else if (unit >= 0xDC80 && unit <= 0xDCFF) {
            bytes.push_back(static_cast<char>(unit - 0xDC00));
        } else {
            AppendUtf8(unit, bytes);
        }
    }
    return bytes;
}

} // namespace vexmarrow

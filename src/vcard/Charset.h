// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/Units.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {
class CodePage;
}

namespace vexmarrow::vcard {

/// Decoded text, and where each unit of it comes from.
struct Decoded {
    std::string text;
    /// For each byte of the text: where the bytes begin that its unit was decoded from.
    std::vector<std::uint32_t> from;
    std::size_t room = 0; ///< for so many more units

    void Append(char32_t unit, std::size_t begin) {
        AppendUnit(unit, text);
        from.resize(text.size(), static_cast<std::uint32_t>(begin));
        --room;
    }
    /// Appends bytes of ASCII; returns for how many there was room.
    std::size_t AppendAscii(std::string_view bytes, std::size_t begin) {
        const std::size_t size = from.size();
        bytes = bytes.substr(0, room);
        text.append(bytes);
        from.resize(text.size());
        std::iota(from.begin() + static_cast<std::ptrdiff_t>(size), from.end(),
                  static_cast<std::uint32_t>(begin));
        room -= bytes.size();
        return bytes.size();
    }
    void Begin(std::size_t most) {
        text.clear();
        from.clear();
        room = most;
    }
};

/// How bytes stand for units.
class Charset {
public:
    Charset() = default;
    Charset(const Charset&) = delete;
    Charset& operator=(const Charset&) = delete;
    virtual ~Charset() = default;

    /// Appends what `bytes` stand for, as long as there is room; `base` is added to the places
    /// where units begin. A byte that stands for nothing is a unit above kStray. Never fails.
    virtual void Decode(std::string_view bytes, std::size_t base, Decoded& decoded) const = 0;

    /// Appends the bytes of a unit; false, and nothing appended, when it has none.
    virtual bool Encode(char32_t unit, std::string& bytes) const = 0;

    /// Whether text is its bytes, as long as nothing is stray.
    virtual bool IsUtf8() const { return false; }
};

/// UTF-8, in which each byte that is not well-formed stands for nothing.
std::unique_ptr<const Charset> MakeUtf8Charset();

/// The form of text itself, for what was UTF-32, or was UTF-16 (`joinsHalves`): there, two halves
/// of a code point that come to stand side by side are one.
std::unique_ptr<const Charset> MakeUnitsCharset(bool joinsHalves);

/// A code page of single bytes.
std::unique_ptr<const Charset> MakePageCharset(const CodePage& page);

/// The charsets that cards name, each made once.
class Charsets {
public:
    /// Null for one that is unknown, has states, has units of more than a byte, or in which bytes
    /// below 80 are not ASCII: values in it are not searched.
    const Charset* Named(std::string_view name);

private:
    std::map<std::string, std::unique_ptr<const Charset>, std::less<>> made_;
};

} // namespace vexmarrow::vcard

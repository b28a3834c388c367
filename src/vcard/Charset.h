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

enum class EncodingMark;

/// Decoded text, and where each unit of it comes from.
struct DecodedText {
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
    virtual void Decode(std::string_view bytes, std::size_t base, DecodedText& decoded) const = 0;

    /// Appends the bytes of a unit; false, and nothing appended, when it has none.
    virtual bool Encode(char32_t unit, std::string& bytes) const = 0;

    /// Whether text is its bytes, as long as nothing is stray.
    virtual bool IsUtf8() const { return false; }
};

/// How text is encoded where no line names a charset.
struct FileCharsets {
    const Charset* file = nullptr; ///< of the file
    const Charset* page = nullptr; ///< the code page
    const Charset* utf8 = nullptr;
    bool hasMark = false; ///< so that other charsets count for coded values only
};

/// All charsets that were needed so far, each made once.
class Charsets {
public:
    Charsets();

    /// The charset that a card names. Null for one that is unknown, has states, has units of more
    /// than a byte, or in which bytes below 80 are not ASCII: values in it are not searched.
    const Charset* Named(std::string_view name);

    /// Those of a file without names. `page` must stay in memory as long as this.
    FileCharsets OfFile(EncodingMark mark, const CodePage& page);

private:
    std::map<std::string, std::unique_ptr<const Charset>, std::less<>> named_;
    std::unique_ptr<const Charset> utf8_;
    std::unique_ptr<const Charset> ofUtf16_;
    std::unique_ptr<const Charset> ofUtf32_;
    std::unique_ptr<const Charset> ofPage_;
    const CodePage* page_ = nullptr;
};

} // namespace vexmarrow::vcard

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

/// Decoded text, and the place from which each unit was decoded.
struct DecodedText {
    std::string text;
    /// For each byte of the text, the place of the bytes from which its unit was decoded.
    std::vector<std::uint32_t> from;
    std::size_t room = 0; ///< how many more units may be appended

    void Append(char32_t unit, std::size_t begin) {
        AppendUnit(unit, text);
        from.resize(text.size(), static_cast<std::uint32_t>(begin));
        --room;
    }
    /// Appends ASCII while there is room; returns the number of bytes appended.
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

/// A rule by which bytes stand for units (vcard/Units.h).
class Charset {
public:
    Charset() = default;
    Charset(const Charset&) = delete;
    Charset& operator=(const Charset&) = delete;
    virtual ~Charset() = default;

    /// Appends the units of `bytes` while there is room. `base` is added to their places. A byte
    /// that stands for no character becomes a stray byte. Never fails.
    virtual void Decode(std::string_view bytes, std::size_t base, DecodedText& decoded) const = 0;

    /// Appends the bytes of a unit; appends nothing and returns false if the charset lacks it.
    virtual bool Encode(char32_t unit, std::string& bytes) const = 0;

    /// Whether well-formed UTF-8 is decoded to the same bytes.
    virtual bool IsUtf8() const { return false; }
};

/// The charsets of a file's text, for lines that name none.
struct FileCharsets {
    const Charset* file = nullptr; ///< of text that is not coded
    const Charset* page = nullptr; ///< the code page
    const Charset* utf8 = nullptr;
    bool hasMark = false; ///< then charsets that lines name count for coded values only
};

/// Makes charsets, each only once. They live as long as this object.
class Charsets {
public:
    Charsets();

    /// The charset of that name. Null for one that is unknown, has states, has units of more than
    /// a byte, or does not keep ASCII: values in such a charset are not searched.
    const Charset* Named(std::string_view name);

    /// The charsets of a file; a file without a mark is assumed to be UTF-8. `page` must outlive
    /// this object.
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

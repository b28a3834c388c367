// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vexmarrow {
class InputFile;
}

namespace vexmarrow::vcard {

/// The mark at the beginning of a file, which tells the file's encoding.
enum class EncodingMark {
    None, ///< UTF-8 or the code page
    Utf8,
    Utf16Le,
    Utf16Be,
    Utf32Le,
    Utf32Be,
};

/// Whether a file with this mark consists of units of more than a byte.
constexpr bool IsWide(EncodingMark mark) {
    return mark != EncodingMark::None && mark != EncodingMark::Utf8;
}

/// Reads a file from front to end as bytes that hold cards. These are the file's own bytes, or,
/// where its units are wider, their spellings (vcard/Units.h), from which ToFileBytes makes the
/// very same units again. Failures are those of InputFile.
class TextSource {
public:
    explicit TextSource(InputFile& file);

    /// Reads text that is in memory already, as it is.
    explicit TextSource(std::string_view text) : whole_(text) {}

    EncodingMark Mark() const { return mark_; }

    /// The bytes of the mark, which are not part of the text.
    std::string_view MarkBytes() const;

    /// The bytes that come next: at least `least`, fewer only when the text ends before that.
    /// Valid until the next call of Peek.
    std::string_view Peek(std::size_t least);
    void Skip(std::size_t count);

    /// Goes back to the beginning. Throws Failure if the file has changed. Must not be called once
    /// the result has been begun.
    void Rewind();

    /// The bytes that spell `text` in the file: `text` itself, or a text in `room`.
    std::string_view ToFileBytes(std::string_view text, std::string& room) const;

    /// At the end: the last bytes of the file, if they are too few to make a unit.
    std::string_view TornUnit() const { return tornUnit_; }

    /// The length of text in the file's units.
    std::size_t CountUnits(std::string_view text) const;

private:
    void Convert(std::string_view bytes);

    InputFile* file_ = nullptr;
    EncodingMark mark_ = EncodingMark::None;
    std::string_view whole_; // the text that is left, where there is no file
    std::string text_;       // converted text; from begin_ on, it is not skipped yet
    std::size_t begin_ = 0;
    std::string tornUnit_;
};

} // namespace vexmarrow::vcard

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

/// What the bytes of a file are units of, as its mark tells.
enum class FileForm {
    Unmarked, ///< UTF-8 or the code page
    Utf8,
    Utf16, ///< low byte first
    Utf16Swapped,
    Utf32,
    Utf32Swapped,
};

/// Whether a file's text is in units of more than a byte.
constexpr bool IsWide(FileForm form) {
    return form != FileForm::Unmarked && form != FileForm::Utf8;
}

/// A file on its way in, from front to end, as bytes that hold cards: the file's own, or, where its
/// units are wider, the spelling of its units (vcard/Units.h), from which InFile makes the very
/// same units again. Failures are those of InputFile.
class FileText {
public:
    explicit FileText(InputFile& file);

    /// The same for text that is in memory already, in which nothing is converted.
    FileText(std::string_view text, FileForm form) : form_(form), whole_(text) {}

    FileForm Form() const { return form_; }

    /// The mark, which is not part of the text.
    std::string_view Mark() const;

    /// The bytes that come next: at least `least`, fewer only when the text ends before that.
    /// Valid until the next call.
    std::string_view Peek(std::size_t least);
    void Skip(std::size_t count);

    /// Begins again, if the file is still the same. To be called before it is written.
    void Rewind();

    /// The bytes of `text` in the file's form: `text` itself, or put into `room`.
    std::string_view InFile(std::string_view text, std::string& room) const;

    /// After the end: bytes too few to make a unit.
    std::string_view Rest() const { return rest_; }

    /// The length of text, in the file's units.
    std::size_t UnitsOf(std::string_view text) const;

private:
    void Convert(std::string_view bytes);

    InputFile* file_ = nullptr;
    FileForm form_;
    std::string_view whole_; // where there is no file
    std::string text_;       // what was converted, and is not skipped from begin_ on
    std::size_t begin_ = 0;
    std::string rest_;
};

} // namespace vexmarrow::vcard

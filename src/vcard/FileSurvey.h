// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <vector>

namespace vexmarrow::vcard {

class Charsets;
class TextSource;

/// What only a look at all of a file can tell.
struct FileSurvey {
    /// Characters of several bytes, and bytes that are not UTF-8, outside values with a charset of
    /// their own.
    std::size_t characters = 0;
    std::size_t strayBytes = 0;

    /// For each card, by its number: whether a line of it is folded that is not base64.
    std::vector<bool> isFolded;

    bool IsUtf8() const { return characters >= strayBytes; }
};

/// Looks at what is left of a text.
FileSurvey SurveyFile(TextSource& text, Charsets& charsets, bool hasMark);

} // namespace vexmarrow::vcard

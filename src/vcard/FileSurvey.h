// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <vector>

namespace vexmarrow::vcard {

class Charsets;
class TextSource;

/// What is known of a file only after all of it has been read.
struct FileSurvey {
    /// How many characters of several bytes and how many bytes that are not UTF-8 there are outside
    /// values that name a charset.
    std::size_t characters = 0;
    std::size_t strayBytes = 0;

    /// For each card, by its number: whether it has a folded line that is not base64.
    std::vector<bool> isFolded;

    bool IsUtf8() const { return characters >= strayBytes; }
};

/// Surveys the text that is left.
FileSurvey SurveyFile(TextSource& text, Charsets& charsets, bool hasMark);

} // namespace vexmarrow::vcard

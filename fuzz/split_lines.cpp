// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Text.h"
#include "fuzz/Fuzz.h"
#include "textio/RFTSFSO.h"

// Lines that end in CR LF: joined again they are the text, and none holds a CR LF.

void vexmarrow::fuzz::TryInput(Input input) {
    std::u16string text = input.Text();
    for (char16_t& unit : text) { // most characters are some that count
        unit = unit % 8 == 0 ? unit : u"\r\n\n\rx\u0A0D\u2028"[unit % 8 - 1];
    }
    std::u16string joined;
    for (const std::u16string& line : SplitTextLines(text)) {
        Require(line.find(kCrLf) == std::u16string::npos, "no line holds a CR LF");
        joined.append(line).append(kCrLf);
    }
    Require(joined == text + u"\r\n", "the lines joined by CR LF are the text");
}

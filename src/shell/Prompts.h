// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

/// The kinds of message box, with the numbers that they traditionally have.
enum class BoxStyle {
    Information = 0, ///< OK, no icon
    YesNo = 4,       ///< Yes and No, no icon
    Critical = 16,   ///< OK, critical icon
    OrLater = 35,    ///< Yes, No and Later, question icon
    Question = 36,   ///< Yes and No, question icon
    Exclamation = 48 ///< OK, exclamation icon
};

enum class Answer { Ok = 1, Later = 2, Yes = 6, No = 7 };

/// The boxes that stop the program until the user has answered. While the program is ending, they
/// are not shown, and both functions throw ProgramEnded (see EventLoop.h).
class Prompts {
public:
    virtual ~Prompts() = default;

    /// Shows `text` literally (no markup) and waits. An empty title stands for the title of the
    /// application. If the user closes the box without pressing a button, the answer is Later, or
    /// No in a box without Later, or Ok in a box with neither.
    virtual Answer ShowMessage(std::u16string_view text, BoxStyle style = BoxStyle::Information,
                               std::u16string_view title = {}) = 0;

    /// Asks for one line of text of any length. At first the line holds `suggestion`, selected.
    /// Returns the text; the empty text if the user cancels.
    virtual std::u16string AskForText(std::u16string_view prompt,
                                      std::u16string_view suggestion) = 0;
};

} // namespace vexmarrow

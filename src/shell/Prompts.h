// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

/// Looks of a message box, by the numbers that the desktop platforms' message boxes share.
enum class BoxStyle {
    Information = 0, ///< OK, no icon
    YesNo = 4,       ///< Yes and No, no icon
    Critical = 16,   ///< OK, critical icon
    OrLater = 35,    ///< Yes, No and Later, question icon
    Question = 36,   ///< Yes and No, question icon
    Exclamation = 48 ///< OK, exclamation icon
};

enum class Answer { Ok = 1, Later = 2, Yes = 6, No = 7 };

/// The boxes that stop the program until the user has answered. An implementation never shows one
/// once the program is ending; it throws ProgramEnded (see EventLoop.h) instead.
class Prompts {
public:
    virtual ~Prompts() = default;

    /// Shows `text` literally (no markup) and waits. An empty title stands for the application
    /// title. Closing a box by other means than its buttons is Later where there is one, else No
    /// where there is one.
    virtual Answer ShowMessage(std::u16string_view text, BoxStyle style = BoxStyle::Information,
                               std::u16string_view title = {}) = 0;

    /// Asks for one line of text of any length, `suggestion` being there already and selected.
    /// Returns the answer; the empty text when the user cancels.
    virtual std::u16string AskForText(std::u16string_view prompt,
                                      std::u16string_view suggestion) = 0;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

class QWidget;

namespace vexmarrow {

/// Controls that a panel makes from the table alone, one for each row of the group. All other
/// controls are made one by one.
enum class ControlGroup {
    None,
    AddFiles,    // buttons beside the list
    RemoveFiles, // buttons beside the list
    Samples,     // buttons beside the list
    Help,        // buttons beside the list
    Tabs,        // of the tab control; they are no widgets
    Sets,        // buttons under the sets
    FindOptions  // option buttons
};

/// What a control is called and says.
struct ControlTexts {
    std::u16string_view name{};    ///< of the object: the designer's name, or one by meaning
    std::u16string_view caption{}; ///< as SetCaption takes it
    std::u16string_view tip{};     ///< the tool tip; empty where it changes while the program runs
    std::u16string_view spoken{};  ///< what assistive programs read instead of the caption
};

/// All that there is to say about a control of a window, except its place and its looks.
template <typename Window>
struct Control {
    ControlTexts texts;
    ControlGroup group = ControlGroup::None;
    void (*onClick)(Window&) = nullptr;
};

/// The controls of a window in the order in which Tab leads through them.
template <typename Window>
using ControlTable = std::span<const Control<Window>>;

/// The texts of all controls of a group.
template <typename Window>
std::vector<ControlTexts> TextsOf(ControlTable<Window> table, ControlGroup group) {
    std::vector<ControlTexts> texts;
    for (const Control<Window>& control : table) {
        if (control.group == group) {
            texts.push_back(control.texts);
        }
    }
    return texts;
}

/// The letter that leads to a control with this caption, in lower case; 0 when there is none.
constexpr char16_t LetterIn(std::u16string_view caption) {
    const std::size_t mark = caption.find(u'&');
    const char16_t letter = mark == std::u16string_view::npos ? u'\0' : caption[mark + 1];
    return letter >= u'A' && letter <= u'Z' ? static_cast<char16_t>(letter + 0x20) : letter;
}

/// Whether no two controls share a name, and no two captions a letter; for a check while building.
/// The same caption may stand on two tabs.
template <typename Window>
constexpr bool AllDiffer(ControlTable<Window> table) {
    for (const Control<Window>& control : table) {
        const auto collides = [&](const Control<Window>& other) {
            const char16_t letter = LetterIn(control.texts.caption);
            return &other != &control && (other.texts.name == control.texts.name ||
                                          (letter != 0 && letter == LetterIn(other.texts.caption) &&
                                           other.texts.caption != control.texts.caption));
        };
        if (std::any_of(table.begin(), table.end(), collides)) {
            return false;
        }
    }
    return true;
}

/// Gives a control of a window its texts and, if it is a button, its handler, and puts it behind
/// `before` in the order of Tab. The handler does not run while a box is open over the window.
/// Returns the control.
QWidget* WireControl(QWidget& window, const ControlTexts& texts, std::function<void()> onClick,
                     QWidget* before);

/// The same for all controls of a table, which the window has made already.
template <typename Window>
void WireControls(Window& window, ControlTable<Window> table) {
    QWidget* before = nullptr;
    for (const Control<Window>& control : table) {
        if (control.group != ControlGroup::Tabs) {
            std::function<void()> onClick;
            if (control.onClick != nullptr) {
                onClick = [&window, handler = control.onClick] { handler(window); };
            }
            before = WireControl(window, control.texts, std::move(onClick), before);
        }
    }
}

} // namespace vexmarrow

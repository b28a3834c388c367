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

/// The groups of controls that a panel makes in a loop, one for each row of the table. Controls
/// without a group are made one by one. The tabs are no widgets.
enum class ControlGroup { None, AddFiles, RemoveFiles, Samples, Help, Tabs, Sets, FindOptions };

/// The names and texts of a control, and its group.
struct ControlRow {
    std::u16string_view name{}; ///< object name: the designer's, or one with a meaning
    ControlGroup group = ControlGroup::None;
    std::u16string_view caption{}; ///< for SetCaption
    std::u16string_view tip{};     ///< tool tip; empty if it changes while the program runs
    std::u16string_view spoken{};  ///< for assistive programs; if empty, they read the caption
};

template <typename Window>
struct Control {
    ControlRow row;
    void (*onClick)(Window&) = nullptr;
};

/// The controls of a window, in the order in which Tab visits them.
template <typename Window>
using ControlTable = std::span<const Control<Window>>;

template <typename Window>
std::vector<ControlRow> RowsOf(ControlTable<Window> table, ControlGroup group) {
    std::vector<ControlRow> rows;
    for (const Control<Window>& control : table) {
        if (control.row.group == group) {
            rows.push_back(control.row);
        }
    }
    return rows;
}

/// The letter that leads to the control with this caption, in lower case; 0 if there is none.
constexpr char16_t LetterIn(std::u16string_view caption) {
    const std::size_t mark = caption.find(u'&');
    const char16_t letter = mark == std::u16string_view::npos ? u'\0' : caption[mark + 1];
    return letter >= u'A' && letter <= u'Z' ? static_cast<char16_t>(letter + 0x20) : letter;
}

/// Whether all names differ, and the letters of all captions, for a check at compile time. The same
/// caption may occur on two tabs.
template <typename Window>
constexpr bool AllDiffer(ControlTable<Window> table) {
    for (const Control<Window>& control : table) {
        const auto collides = [&](const Control<Window>& other) {
            const char16_t letter = LetterIn(control.row.caption);
            return &other != &control && (other.row.name == control.row.name ||
                                          (letter != 0 && letter == LetterIn(other.row.caption) &&
                                           other.row.caption != control.row.caption));
        };
        if (std::any_of(table.begin(), table.end(), collides)) {
            return false;
        }
    }
    return true;
}

/// Finds the control of a row by its name, gives it its texts and, unless `onClick` is empty,
/// its handler, and puts it behind `before`, which may be null, in the order of Tab. The handler
/// does not run while a box is open over the window. Returns the control.
QWidget* WireControl(QWidget& window, const ControlRow& row, std::function<void()> onClick,
                     QWidget* before);

/// Does the same for all controls of a table.
template <typename Window>
void WireControls(Window& window, ControlTable<Window> table) {
    QWidget* before = nullptr;
    for (const Control<Window>& control : table) {
        if (control.row.group != ControlGroup::Tabs) {
            std::function<void()> onClick;
            if (control.onClick != nullptr) {
                onClick = [&window, handler = control.onClick] { handler(window); };
            }
            before = WireControl(window, control.row, std::move(onClick), before);
        }
    }
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/QtPrompts.h"

#include "app/InputBox.h"
#include "app/MessageBox.h"
#include "app/NormalPointer.h"
#include "app/QtEventLoop.h"
#include "app/ShownText.h"
#include "app/Strings.h"
#include "app/WaitingBoxes.h"
#include "shell/ProductTexts.h"

#include <algorithm>

namespace vexmarrow {
namespace {

/// Shortens every line that would take long to draw.
std::u16string WithShortLines(std::u16string_view text) {
    constexpr std::size_t kMostOfLine = 20'000; // no path or sentence is longer
    std::u16string lines;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find_first_of(u"\r\n"), text.size());
        lines += Shortened(text.substr(0, length), kMostOfLine);
        lines += text.substr(length, 1);
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return lines;
}

} // namespace

Answer QtPrompts::ShowMessage(std::u16string_view text, BoxStyle style, std::u16string_view title) {
    eventLoop_.ThrowIfEnded();
    const auto pointer = ShowNormalPointer();
    MessageBox box(OwnerOfBoxes(owner_),
                   title.empty() ? ToQString(ApplicationTitle(kProductName)) : ToQString(title),
                   ShownAsText(WithShortLines(text)), style);
    const Answer answer = box.Ask();
    eventLoop_.ThrowIfEnded();
    return answer;
}

std::u16string QtPrompts::AskForText(std::u16string_view prompt, std::u16string_view suggestion) {
    eventLoop_.ThrowIfEnded();
    const auto pointer = ShowNormalPointer();
    InputBox box(OwnerOfBoxes(owner_), ToQString(ApplicationTitle(kProductName)), ToQString(prompt),
                 ToQString(suggestion));
    const QString answer = box.Ask();
    eventLoop_.ThrowIfEnded();
    return ToText(answer);
}

} // namespace vexmarrow

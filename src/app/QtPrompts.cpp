// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/QtPrompts.h"

#include "app/Controls.h"
#include "app/InputBox.h"
#include "app/MessageBox.h"
#include "app/NormalPointer.h"
#include "app/QtEventLoop.h"
#include "app/Strings.h"
#include "shell/Titles.h"

namespace vexmarrow {
Answer QtPrompts::ShowMessage(std::u16string_view text, BoxStyle style, std::u16string_view title) {
    eventLoop_.ThrowIfEnded();
    const NormalPointer pointer;
    const std::u16string standard = ApplicationTitle(kProductName);
    MessageBox box(OwnerOfBoxes(owner_),
                   ToQString(title.empty() ? std::u16string_view(standard) : title),
                   ShownAsText(text), style);
    const Answer answer = box.Ask();
    eventLoop_.ThrowIfEnded();
    return answer;
}

std::u16string QtPrompts::AskForText(std::u16string_view prompt, std::u16string_view suggestion) {
    eventLoop_.ThrowIfEnded();
    const NormalPointer pointer;
    InputBox box(OwnerOfBoxes(owner_), ToQString(ApplicationTitle(kProductName)), ToQString(prompt),
                 ToQString(suggestion));
    const QString answer = box.Ask();
    eventLoop_.ThrowIfEnded();
    return ToText(answer);
}

} // namespace vexmarrow

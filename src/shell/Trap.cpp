// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "shell/Trap.h"

#include "base/Text.h"
#include "base/Utf8.h"
#include "shell/Prompts.h"

namespace vexmarrow {

std::u16string ErrorReportText(std::u16string_view description, std::u16string_view location,
                               int line) {
    return Concat(description, kCrLf, location, u"at line ", Decimal(line), u"\r\r",
                  u"Please email screenshot of this message to " VEXMARROW_SUPPORT_ADDRESS);
}

std::u16string UnforeseenDescription(const std::exception& error) {
    return TextFromUtf8(error.what());
}

Trap::Trap(Prompts& prompts, std::u16string_view routine, std::u16string_view origin)
    : prompts_(prompts), location_(Concat(origin, routine, u" ")) {}

void Trap::Report(int line, std::u16string_view description) {
    prompts_.ShowMessage(ErrorReportText(description, location_, line), BoxStyle::Exclamation,
                         u"Application Error");
}

} // namespace vexmarrow

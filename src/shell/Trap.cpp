// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "shell/Trap.h"

#include "base/Text.h"
#include "shell/Prompts.h"

namespace vexmarrow {

Trap::Trap(Prompts& prompts, std::u16string_view routine, std::u16string_view origin)
    : prompts_(prompts), location_(Concat(origin, routine, u" ")) {}

void Trap::Report(int line, std::u16string_view description) {
    prompts_.ShowMessage(
        Concat(description, kCrLf, location_, u"at line ", Decimal(line), u"\r\r",
               u"Please email screenshot of this message to " VEXMARROW_SUPPORT_ADDRESS),
        BoxStyle::Exclamation, u"Application Error");
}

} // namespace vexmarrow

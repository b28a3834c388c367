// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "shell/ProductTexts.h"

#include "base/Text.h"

namespace vexmarrow {

std::u16string ApplicationTitle(std::u16string_view product) {
    constexpr std::size_t kLongest = 40;
    do {
        const std::size_t blank = product.rfind(u' ');
        if (blank == std::u16string_view::npos) {
            break;
        }
        product = product.substr(0, blank);
    } while (product.size() > kLongest);
    return std::u16string(product);
}

std::u16string HelpText() {
    return Concat(u"This software is not intended to be used on non-text-based files such as "
                  u"media files, executables, etc.",
                  u"\r\r",
                  u"To contact us, please use the online contact form at " VEXMARROW_CONTACT_PAGE);
}

} // namespace vexmarrow

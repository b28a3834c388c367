// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/Charset.h"
#include "vcard/LinePart.h"
#include "vcard/Pairs.h"

#include <functional>
#include <string_view>

namespace vexmarrow {
class CodePage;
class InputFile;
} // namespace vexmarrow

namespace vexmarrow::vcard {

/// Replaces in files as contact cards are read: in logical lines, which may be folded and coded.
/// docs/VCARDS.md tells the rules. Every byte outside of logical lines whose text changes comes out
/// as it went in, whatever the file holds.
class CardReplacer {
public:
    /// Reads a file from its front to its end and hands the result to `write` in parts of any size.
    /// `page` is for what has no mark and is not UTF-8; it must stay in memory as long as this.
    /// A part is handed over only when `write` may change the file that it is read from: nothing
    /// is read twice after that. Failures are those of InputFile and of `write`.
    void Replace(InputFile& file, const Pairs& pairs, LinePart part, const CodePage& page,
                 const std::function<void(std::string_view)>& write);

private:
    Charsets charsets_;
};

} // namespace vexmarrow::vcard

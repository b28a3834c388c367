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

/// Replaces text in files that are read as contact cards: in logical lines, which may be folded and
/// coded. docs/VCARDS.md gives the rules. Outside logical lines whose text changes, every byte
/// stays as it is, whatever the file holds.
class CardReplacer {
public:
    /// Reads a file and passes the result to `write` in parts of any size. `page` is the charset of
    /// text that has no mark and is not UTF-8; it must outlive this object. When `write` is called
    /// for the first time, no byte of the file has to be read a second time, so `write` may begin
    /// to change the file. Failures are those of InputFile and of `write`.
    void Replace(InputFile& file, const Pairs& pairs, LinePart part, const CodePage& page,
                 const std::function<void(std::string_view)>& write);

private:
    Charsets charsets_;
};

} // namespace vexmarrow::vcard

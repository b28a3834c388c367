// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/TextResult.h"

#include "textio/CodePage.h"
#include "textio/FileTests.h"
#include "textio/RFTSFSO.h"

namespace vexmarrow {
namespace {

void AppendUtf16(std::u16string_view text, std::string& bytes) {
    bytes.reserve(bytes.size() + text.size() * 2);
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<char>(unit & 0xFFU));
        bytes.push_back(static_cast<char>(unit >> 8U));
    }
}

} // namespace

void TextResult::WriteTextFile(std::u16string_view text, std::u16string_view path,
                               std::int32_t WriteMode) {
    const bool unicode = textio_.Flags().IsUnicode;
    bytes_.clear();
    if (WriteMode <= 1 || !file_) {
        const WriteStart start = WriteMode <= 1 ? WriteStart::Replace : WriteStart::Append;
        file_.reset(); // only one result is under way at a time
        file_ = writer_.Begin(path, start, source_ ? &*source_ : nullptr);
        if (unicode && (start == WriteStart::Replace || !IsExistingFile(path))) {
            AppendUtf16(u"\uFEFF", bytes_);
        }
    }
    if (unicode) {
        AppendUtf16(text, bytes_);
    } else {
        textio_.Ansi().Page().Encode(text, bytes_);
    }
    file_->Append(bytes_);
}

void TextResult::Commit() {
    if (file_) {
        file_->Commit();
        file_.reset();
    }
}

} // namespace vexmarrow

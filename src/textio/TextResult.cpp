// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/TextResult.h"

#include "textio/CodePage.h"
#include "textio/FileTests.h"
#include "textio/RFTSFSO.h"

#include <bit>
#include <utility>

namespace vexmarrow {
namespace {

std::string_view BytesOf(std::u16string_view text) {
    static_assert(std::endian::native == std::endian::little, "units are written as they are");
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

} // namespace

void TextResult::WriteTextFile(std::u16string_view text, std::u16string_view path,
                               std::int32_t WriteMode) {
    const bool needsMark = Start(path, WriteMode);
    if (textio_.Flags().IsUnicode) {
        if (needsMark) {
            file_->Append(BytesOf(u"\uFEFF"));
        }
        file_->Append(BytesOf(text));
    } else {
        Encode(text);
        file_->Append(bytes_);
    }
}

/// Puts the bytes of text in the code page into bytes_.
void TextResult::Encode(std::u16string_view text) {
    bytes_.clear();
    std::u16string joined;
    if (!heldBack_.empty()) {
        joined = std::exchange(heldBack_, {}).append(text);
        text = joined;
    }
    if (!text.empty() && text.back() >= 0xD800 && text.back() <= 0xDBFF) {
        heldBack_ = text.back();
        text.remove_suffix(1);
    }
    textio_.Ansi().Page().Encode(text, bytes_);
}

void TextResult::WriteTextFile(std::string_view bytes, std::u16string_view path,
                               std::int32_t WriteMode) {
    Start(path, WriteMode);
    file_->Append(bytes);
}

/// Makes sure that the file is begun. Returns whether UTF-16 needs its mark now.
bool TextResult::Start(std::u16string_view path, std::int32_t WriteMode) {
    if (WriteMode > 1 && file_) {
        return false;
    }
    const WriteStart start = WriteMode <= 1 ? WriteStart::Replace : WriteStart::Append;
    file_.reset(); // only one result is under way at a time
    heldBack_.clear();
    file_ = writer_.Begin(path, start, source_);
    return start == WriteStart::Replace || !IsExistingFile(path);
}

void TextResult::Commit() {
    if (file_) {
        if (!heldBack_.empty()) { // its other half never came
            bytes_.clear();
            textio_.Ansi().Page().Encode(std::exchange(heldBack_, {}), bytes_);
            file_->Append(bytes_);
        }
        file_->Commit();
        file_.reset();
    }
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/TextResult.h"

#include "base/Utf8.h"
#include "textio/CodePage.h"
#include "textio/PathChecks.h"
#include "textio/RFTSFSO.h"

#include <bit>
#include <utility>

namespace vexmarrow {
namespace {

std::string_view BytesOf(std::u16string_view text) {
    static_assert(std::endian::native == std::endian::little, "units are written as they are");
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

/// The most bytes that are converted and written at once, so that a long line is not copied as a
/// whole.
constexpr std::size_t kStretch = std::size_t{64} * 1024;

/// The characters at the beginning of UTF-8 text that fit into `most` bytes.
std::string_view WholeCharacters(std::string_view utf8, std::size_t most) {
    if (utf8.size() > most) {
        while ((static_cast<unsigned char>(utf8[most]) & 0xC0U) == 0x80) {
            --most;
        }
    }
    return utf8.substr(0, most);
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
        bytes_.clear();
        textio_.Ansi().Page().Encode(text, bytes_);
        file_->Append(bytes_);
    }
}

void TextResult::WriteTextFile(std::u32string_view text, std::u16string_view path,
                               std::int32_t WriteMode) {
    Start(path, WriteMode);
    std::u32string joined;
    if (!heldBack_.empty()) {
        joined = std::exchange(heldBack_, {}).append(text);
        text = joined;
    }
    if (!text.empty() && text.back() >= 0xD800 && text.back() <= 0xDBFF) {
        heldBack_ = text.back();
        text.remove_suffix(1);
    }
    bytes_.clear();
    EncodeUtf8(text, bytes_, kSubstitute);
    file_->Append(bytes_);
}

void TextResult::WriteTextFile(std::string_view bytes, TextFormat format, std::u16string_view path,
                               std::int32_t WriteMode) {
    Start(path, WriteMode);
    if (format == TextFormat::Utf8) {
        while (!bytes.empty()) {
            const std::string_view stretch = WholeCharacters(bytes, kStretch);
            file_->Append(textio_.Ansi().Page().FromUtf8(stretch, bytes_));
            bytes.remove_prefix(stretch.size());
        }
    } else {
        for (; bytes.size() > kStretch; bytes.remove_prefix(kStretch)) {
            file_->Append(bytes.substr(0, kStretch));
        }
        file_->Append(bytes);
    }
}

/// Begins the file if necessary. Returns whether UTF-16 needs its mark now.
bool TextResult::Start(std::u16string_view path, std::int32_t WriteMode) {
    if (WriteMode > 1 && file_) {
        return false;
    }
    file_.reset(); // the writer permits only one result at a time
    heldBack_.clear();
    const bool goesOn = WriteMode > 1 && IsExistingFile(textio_.Calls(), path);
    const std::string before = goesOn ? textio_.ReadBytes(path) : std::string();
    file_ = writer_.Begin(path, source_);
    file_->Append(before);
    return !goesOn;
}

void TextResult::Seal(int line) {
    Try(line, [&] {
        if (file_) {
            bytes_.clear();
            EncodeUtf8(std::exchange(heldBack_, {}), bytes_, kSubstitute);
            file_->Append(bytes_);
            file_->Seal();
        }
    });
}

void TextResult::Commit(int line) {
    Try(line, [&] {
        if (file_) {
            file_->Commit();
            file_.reset();
        }
    });
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "run/Utf8Hint.h"

#include "base/Utf8.h"
#include "filelist/FileList.h"
#include "run/RunInputs.h"
#include "sets/SetList.h"
#include "textio/CodePage.h"
#include "textio/OpenedFile.h"
#include "textio/PathChecks.h"
#include "textio/SystemCalls.h"
#include "textio/TextFormat.h"

#include <algorithm>
#include <unordered_set>

namespace vexmarrow {
namespace {

constexpr std::size_t kMostUnmarked = 8; // files without a mark
constexpr std::size_t kMostTried = 64;   // all files, even if they cannot be read
constexpr std::size_t kMostBytes = 16'384;

bool HasLetters(std::u16string_view text) {
    return std::any_of(text.begin(), text.end(), [](char16_t unit) { return unit >= 0x80; });
}

bool HasLettersInTexts(const RunInputs& inputs, const SetList& sets) {
    const auto inAny = [](std::span<const std::u16string> texts) {
        return std::any_of(texts.begin(), texts.end(), HasLetters);
    };
    return inputs.SelectedTab() == Tab::Sets
               ? inAny(sets.FindTexts()) || inAny(sets.ReplaceTexts())
               : HasLetters(inputs.FindText()) || HasLetters(inputs.ReplacementText());
}

} // namespace

bool Utf8Hint::Applies(const RunInputs& inputs, const SetList& sets) {
    if (inputs.ReadAsVCards() || ansi_.Page().HasStrayBytes()) { // only UTF-8 has them
        return false;
    }
    if (!found_) {
        found_ = LookAtFiles();
    }
    return !found_->otherBytes &&
           (found_->mark || (found_->letters && HasLettersInTexts(inputs, sets)));
}

Utf8Hint::Found Utf8Hint::LookAtFiles() {
    Found found;
    std::unordered_set<std::u16string_view> tried;
    std::size_t unmarked = 0;
    for (std::size_t row = 1;
         row <= list_.Count() && tried.size() < kMostTried && unmarked < kMostUnmarked; ++row) {
        const std::u16string& path = list_.Row(row);
        std::string bytes;
        if (!tried.insert(path).second || !ReadBeginning(path, bytes)) {
            continue;
        }
        const Mark mark = MarkOf(bytes);
        found.mark = found.mark || mark == Mark::Utf8;
        if (mark == Mark::None) {
            ++unmarked;
            const bool more = bytes.size() == kMostBytes; // the last character may be cut off
            bytes.resize(MeasureUtf8(bytes, bytes.size(), more).bytes);
            found.letters = found.letters || AsciiLength(bytes) < bytes.size();
            found.otherBytes = found.otherBytes || !IsUtf8(bytes);
        }
    }
    return found;
}

/// Reads the first bytes of a regular file. Returns false if they cannot be read.
bool Utf8Hint::ReadBeginning(std::u16string_view path, std::string& bytes) {
    // Checked before the file is opened: the writer of a pipe would take this for its reader.
    if (!IsExistingFile(calls_, path)) {
        return false;
    }
    const OpenedFile opened = OpenToRead(calls_, NativeName(path));
    FileStatus status;
    if (opened.error != 0 || calls_.Status(opened.file.Number(), status) != 0 ||
        !status.IsRegular()) { // it may be a different file by now
        return false;
    }
    bytes.resize(kMostBytes);
    std::size_t size = 0;
    const int error = ReadWhole(calls_, opened.file.Number(), bytes.data(), kMostBytes, 0, size);
    bytes.resize(size);
    return error == 0;
}

} // namespace vexmarrow

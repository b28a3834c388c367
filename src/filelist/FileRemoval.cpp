// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "filelist/FileRemoval.h"

#include "filelist/FileList.h"
#include "shell/EventLoop.h"
#include "shell/MousePointer.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"

#include <unicode/ustring.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace vexmarrow {
namespace {

/// The text in lower case, by the rules of the user's language. A character must not depend on its
/// neighbours, or a text might not be found within another text. So each character is converted
/// alone, and the two small sigmas count as the same letter.
std::u16string InLowerCase(std::u16string_view text) {
    constexpr const char* kLanguageOfUser = nullptr;
    constexpr char16_t kFinalSigma = 0x03C2;
    constexpr char16_t kSigma = 0x03C3;
    std::u16string lower;
    lower.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (unit < 0x80 && unit != u'I') { // the lower case of "I" depends on the language
            lower.push_back(unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20)
                                                         : unit);
            continue;
        }
        const bool pair = U16_IS_LEAD(unit) && i + 1 < text.size() && U16_IS_TRAIL(text[i + 1]);
        std::array<char16_t, 8> letters{};
        UErrorCode error = U_ZERO_ERROR;
        const std::int32_t length =
            u_strToLower(letters.data(), static_cast<std::int32_t>(letters.size()), &text[i],
                         pair ? 2 : 1, kLanguageOfUser, &error);
        lower.append(letters.data(), static_cast<std::size_t>(length));
        i += pair ? 1 : 0;
    }
    std::replace(lower.begin(), lower.end(), kFinalSigma, kSigma);
    return lower;
}

} // namespace

void FileRemoval::RemoveFilenamesNotContaining() {
    Filter(u"Form1.PushButton11_Click", u"Remove entries not containing: ", Which::NotContaining);
}

void FileRemoval::RemoveFilenamesContaining() {
    Filter(u"Form1.PushButton17_Click", u"Remove entries containing: ", Which::Containing);
}

void FileRemoval::Filter(std::u16string_view routine, std::u16string_view prompt, Which which) {
    Trap trap(desktop_.prompts, routine);
    std::u16string text;
    trap.Do(1, [&] { text = desktop_.prompts.AskForText(prompt, u""); });
    if (text.empty()) {
        return;
    }
    trap.Do(2, [&] { desktop_.pointer.SetPointer(MousePointer::Hourglass); });
    trap.Do(3, [&] { RemoveEntries(text, which); });
    trap.Do(4, [&] { desktop_.pointer.SetPointer(MousePointer::Arrow); });
}

void FileRemoval::RemoveEntries(std::u16string_view text, Which which) {
    const std::u16string wanted = InLowerCase(text);
    const std::size_t count = list_.Count();
    std::vector<std::size_t> numbers;
    for (std::size_t i = 1; i <= count; ++i) {
        desktop_.eventLoop.Yield({u"Row", i, count});
        // The whole path is searched, including the names of folders.
        const bool contains = InLowerCase(list_.Row(i)).find(wanted) != std::u16string::npos;
        if (contains == (which == Which::Containing)) {
            numbers.push_back(i);
        }
    }
    list_.Remove(numbers);
}

void FileRemoval::ClearList() {
    Trap trap(desktop_.prompts, u"Form1.PushButton2_Click");
    if (!desktop_.pointer.IsBusy()) {
        trap.Do(1, [&] { list_.Clear(); });
    }
}

void FileRemoval::RemoveRow(std::size_t number) {
    if (!desktop_.pointer.IsBusy() && number >= 1 && number <= list_.Count()) {
        list_.Remove({number});
    }
}

} // namespace vexmarrow

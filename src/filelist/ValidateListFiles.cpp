// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "filelist/ValidateListFiles.h"

#include "base/Text.h"
#include "filelist/FileList.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"

#include <string>
#include <vector>

namespace vexmarrow {
namespace {

/// The text after the last ".", even if that is in the name of a folder. The whole path if it has
/// no ".".
std::u16string_view FileExtension(std::u16string_view path) {
    const std::size_t dot = path.rfind(u'.');
    return dot == std::u16string_view::npos ? path : path.substr(dot + 1);
}

bool HasExpectedExtension(std::u16string_view path) {
    const std::u16string_view extension = FileExtension(path);
    // ASCII is enough, because no other letter is "v", "c" or "f" in lower case.
    return extension.size() <= kExpectedExtension.size() &&
           kExpectedExtension.find(InLowerAscii(extension)) != std::u16string_view::npos;
}

} // namespace

void ValidateListFiles(FileList& list, Prompts& prompts) {
    Trap trap(prompts, u"Main.ValidateListFiles");
    std::u16string report;
    std::vector<std::size_t> unfit;
    trap.Do(1, [&] {
        for (std::size_t i = 1; i <= list.Count(); ++i) {
            const std::u16string& path = list.Row(i);
            if (!HasExpectedExtension(path)) {
                report.append(path).append(kCrLf);
                unfit.push_back(i);
            }
        }
    });
    if (unfit.empty()) {
        return;
    }
    Answer answer = Answer::No;
    trap.Do(2, [&] {
        answer = prompts.ShowMessage(
            Concat(u"These files: ", kCrLf, kCrLf, report, kCrLf,
                   u"do not appear to be in the expected file format because of their file "
                   u"extension.",
                   kCrLf, kCrLf, u"Would you like to remove them from list?"),
            BoxStyle::Question);
    });
    if (answer == Answer::Yes) {
        trap.Do(3, [&] {
            // The list may have changed meanwhile, so that the numbers belong to other rows.
            std::erase_if(unfit, [&](std::size_t i) { return HasExpectedExtension(list.Row(i)); });
            list.Remove(unfit);
        });
    }
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "filelist/ListValidation.h"

#include "base/Text.h"
#include "filelist/FileList.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"

#include <string>
#include <vector>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kExpectedExtension = u"vcf";

bool IsFit(std::u16string_view path) {
    return FitsExpectedExtension(FileExtension(path));
}

} // namespace

std::u16string_view FileExtension(std::u16string_view path) {
    const std::size_t dot = path.rfind(u'.');
    return dot == std::u16string_view::npos ? path : path.substr(dot + 1);
}

bool FitsExpectedExtension(std::u16string_view extension) {
    // No character but A to Z has a lower-case form in "vcf".
    return extension.size() <= kExpectedExtension.size() &&
           kExpectedExtension.find(InLowerAscii(extension)) != std::u16string_view::npos;
}

void ValidateListFiles(FileList& list, Prompts& prompts) {
    Trap trap(prompts, u"Main.ValidateListFiles");
    std::u16string report;
    std::vector<std::size_t> unfit;
    trap.Do(1, [&] {
        for (std::size_t i = 1; i <= list.Count(); ++i) {
            const std::u16string& path = list.Row(i);
            if (!IsFit(path)) {
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
            // The list may have changed behind the question: other rows may bear the numbers.
            std::erase_if(unfit, [&](std::size_t i) { return IsFit(list.Row(i)); });
            list.Remove(unfit);
        });
    }
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/OutputPath.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "textio/Paths.h"

namespace vexmarrow {

std::u16string OutputPath(std::u16string_view inputPath, const OutputLocation& location) {
    if (!location.Option4 && !location.Option5) {
        return {};
    }
    const std::u16string_view folder =
        location.Option4 ? std::u16string_view(location.Text3) : FolderOfPath(inputPath);
    if (folder.empty()) {
        throw Failure(
            location.Option4
                ? u"No folder is given for the results, so they cannot be saved."
                : Concat(u"The path \"", inputPath,
                         u"\" names no folder, so its result cannot be saved beside it."));
    }
    return NormalizePath(Concat(folder, kSeparatorText, NameOfPath(inputPath)));
}

} // namespace vexmarrow

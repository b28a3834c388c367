// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/OutputPath.h"

#include "base/Failure.h"
#include "base/Text.h"
#include "textio/Paths.h"

namespace vexmarrow {

std::u16string OutputPath(std::u16string_view inputPath, const OutputLocation& location) {
    if (location.kind == OutputLocation::Nowhere) {
        return {};
    }
    const bool beside = location.kind == OutputLocation::BesideInput;
    const std::u16string_view folder = beside ? FolderOfPath(inputPath) : location.folder;
    if (folder.empty()) {
        throw Failure(beside
                          ? Concat(u"The path \"", inputPath,
                                   u"\" names no folder, so its result cannot be saved beside it.")
                          : u"No folder is given for the results, so they cannot be saved.");
    }
    return NormalizePath(Concat(folder, kSeparatorText, NameOfPath(inputPath)));
}

bool IsInPlace(std::u16string_view inputPath, const OutputLocation& location) {
    return location.kind == OutputLocation::OneFolder
               ? FolderOfPath(inputPath) == WithSeparator(location.folder)
               : location.kind == OutputLocation::BesideInput;
}

} // namespace vexmarrow

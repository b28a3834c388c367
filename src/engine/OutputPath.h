// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

/// Where results go.
struct OutputLocation {
    enum Kind { Nowhere, OneFolder, BesideInput };

    Kind kind = Nowhere;
    std::u16string folder; ///< counts for OneFolder only
};

/// The normalised path of the result of `inputPath`: always the input's own file name. The empty
/// path for Nowhere. Throws Failure where the folder would be empty: a result must not land in the
/// root of the file system because a row or a box names no folder.
std::u16string OutputPath(std::u16string_view inputPath, const OutputLocation& location);

/// Whether results take the place of the input. Compares spellings of paths, not files.
bool IsInPlace(std::u16string_view inputPath, const OutputLocation& location);

} // namespace vexmarrow

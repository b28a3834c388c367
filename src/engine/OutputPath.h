// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

/// Where results go, as the controls of the window stand: into the folder Text3 with Option4, else
/// into the folder of the input with Option5.
struct OutputLocation {
    bool Option4 = false;
    bool Option5 = false;
    std::u16string Text3;
};

/// The normalised path of the result of `inputPath`: always the input's own file name. The empty
/// path when neither option is set. Throws Failure where the folder would be empty: the result
/// must not land in the root of the file system because a row or a box names no folder.
std::u16string OutputPath(std::u16string_view inputPath, const OutputLocation& location);

} // namespace vexmarrow

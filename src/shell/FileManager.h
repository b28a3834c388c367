// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

namespace vexmarrow {

/// The desktop's file manager.
class FileManager {
public:
    virtual ~FileManager() = default;

    /// Shows a folder to the user. Does nothing if there is no file manager.
    virtual void OpenFolder(std::u16string_view folder) = 0;
};

} // namespace vexmarrow

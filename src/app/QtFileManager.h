// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Strings.h"
#include "shell/FileManager.h"

#include <QDesktopServices>
#include <QUrl>

namespace vexmarrow {

/// The file manager that the user's desktop has for folders.
class QtFileManager final : public FileManager {
public:
    void OpenFolder(std::u16string_view folder) override {
        QDesktopServices::openUrl(QUrl::fromLocalFile(ToQString(folder)));
    }
};

} // namespace vexmarrow

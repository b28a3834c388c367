// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Strings.h"
#include "shell/FileManager.h"

#include <QDesktopServices>
#include <QUrl>

namespace vexmarrow {

/// The file manager of the user's desktop.
class QtFileManager final : public FileManager {
public:
    void OpenFolder(std::u16string_view folder) override {
        QDesktopServices::openUrl(QUrl::fromLocalFile(ToQString(folder)));
    }
};

} // namespace vexmarrow

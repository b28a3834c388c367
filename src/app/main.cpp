// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Application.h"
#include "app/Assembly.h"
#include "app/Folders.h"
#include "filelist/ReceivedPaths.h"

#include <QDir>
#include <QIcon>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace {

/// The icon in all its sizes, for a program that is not installed.
QIcon BuiltInIcon() {
    QIcon icon;
    for (const QFileInfo& picture : QDir(QStringLiteral(":/icon")).entryInfoList()) {
        icon.addFile(picture.filePath());
    }
    return icon;
}

} // namespace

int main(int argc, char** argv) {
    using namespace vexmarrow;

    // Otherwise a write beyond the user's limit for file sizes would end the program; now it fails.
    std::signal(SIGXFSZ, SIG_IGN); // NOLINT(cert-err33-c)

    SettleHomeFolder();
    // The toolkit would remove its options even after "--", so it does not see the names there. Its
    // own list of arguments is not used, because it loses names that are not UTF-8.
    char** const onlyNames = std::find(argv, argv + argc, std::string_view("--"));
    const std::vector<std::string> names(onlyNames, argv + argc);
    argc = static_cast<int>(onlyNames - argv);
    const Application application(argc, argv);
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    arguments.insert(arguments.end(), names.begin(), names.end());

    QApplication::setApplicationVersion(QStringLiteral(VEXMARROW_VERSION));
    QApplication::setDesktopFileName(QStringLiteral(VEXMARROW_DESKTOP_ID));
    QApplication::setWindowIcon(
        QIcon::fromTheme(QStringLiteral(VEXMARROW_DESKTOP_ID), BuiltInIcon()));

    Assembly program;
    std::error_code unknown;
    const std::string folder = std::filesystem::current_path(unknown).native();
    return program.Start(PathsOfArguments(arguments, folder)) ? QApplication::exec() : 0;
}

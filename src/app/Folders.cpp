// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Folders.h"

#include "app/Strings.h"
#include "base/Utf8.h"
#include "textio/Paths.h"

#include <QStandardPaths>

#include <cstdlib>
#include <filesystem>
#include <pwd.h>
#include <unistd.h>

namespace vexmarrow {

void SettleHomeFolder() {
    // NOLINTBEGIN(concurrency-mt-unsafe): there is only one thread yet.
    const char* const home = std::getenv("HOME");
    if (home != nullptr && *home == '/') {
        return;
    }
    const passwd* const user = ::getpwuid(::geteuid());
    if (user != nullptr && user->pw_dir != nullptr && *user->pw_dir == '/') {
        ::setenv("HOME", user->pw_dir, 1);
    } else {
        ::unsetenv("HOME");
    }
    // NOLINTEND(concurrency-mt-unsafe)
}

std::u16string DesktopFolder() {
    return WithSeparator(
        NormalizePath(ToText(QStandardPaths::writableLocation(QStandardPaths::DesktopLocation))));
}

std::u16string ProgramFolder() {
    return TextFromNativeName(
        std::filesystem::read_symlink("/proc/self/exe").parent_path().native());
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/UserFolders.h"

#include "app/Strings.h"
#include "textio/Paths.h"

#include <QStandardPaths>

#include <cstdlib>
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

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Application.h"
#include "app/Form1.h"
#include "app/IniSettingsStore.h"
#include "app/QtEventLoop.h"
#include "app/QtFileManager.h"
#include "app/QtPickers.h"
#include "app/QtPrompts.h"
#include "app/Strings.h"
#include "base/Utf8.h"
#include "journal/JournalFolders.h"
#include "journal/JournaledWriter.h"
#include "journal/Recovery.h"
#include "textio/CodePage.h"
#include "textio/RFTSFSO.h"

#include <QIcon>
#include <QStandardPaths>

#include <csignal>
#include <filesystem>

int main(int argc, char** argv) {
    using namespace vexmarrow;

    // A file that would grow past the user's limit is a failure to report, not the end.
    std::signal(SIGXFSZ, SIG_IGN); // NOLINT(cert-err33-c)

    const Application application(argc, argv);
    QApplication::setApplicationVersion(QStringLiteral(VEXMARROW_VERSION));
    QApplication::setDesktopFileName(QStringLiteral(VEXMARROW_DESKTOP_ID));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral(VEXMARROW_DESKTOP_ID)));

    EncodingFlags flags;
    AnsiCodePage ansi(CodePageOfEnvironment());
    SystemCalls calls;
    RFTSFSO textio(calls, flags, ansi);
    const auto journals = JournalFoldersOfUser();
    JournaledWriter writer(calls, journals);
    QtEventLoop eventLoop;
    QtPrompts prompts(eventLoop);
    QtPickers pickers(eventLoop);
    QtFileManager fileManager;
    IniSettingsStore settings;
    const auto programFolder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);

    Form1 form1({textio, writer, ansi, prompts, pickers, settings, fileManager, eventLoop,
                 TextFromNativeName(programFolder.native()), ToText(desktop) + u"/"});
    prompts.SetOwner(&form1);
    pickers.SetOwner(&form1);
    form1.Form_Load();
    Recovery(calls, journals, prompts).Run();
    form1.show();
    return QApplication::exec();
}

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Form1.h"
#include "app/IniSettingsStore.h"
#include "app/QtEventLoop.h"
#include "app/QtFileManager.h"
#include "app/QtPickers.h"
#include "app/QtPrompts.h"
#include "safety/LogFolders.h"
#include "safety/Recovery.h"
#include "safety/SafeWriter.h"
#include "textio/CodePage.h"
#include "textio/RFTSFSO.h"

#include <string>
#include <vector>

namespace vexmarrow {

/// Has the user database name the home folder where the environment does not, for all that look
/// there: settings, logs, the desktop. A user whom the database does not know has none, and "/"
/// serves. To be called before anything else, the application object included.
void SettleHomeFolder();

/// The user's desktop folder, with exactly one separator at its end.
std::u16string DesktopFolder();

/// The folder of the program file, without a separator at its end.
std::u16string ProgramFolder();

/// The parts of the program, put together as on a user's desktop; the application object is there
/// already.
class Assembly {
public:
    Assembly();

    /// Reports settings that cannot be used, restores the user's choices, puts back what an earlier
    /// run was interrupted in, if the user agrees, and shows the main window. Returns whether that
    /// shows: the program may have been ended by then. `paths` come into the list after that, as if
    /// they had been dropped on it.
    bool Start(const std::vector<std::u16string>& paths = {});

    Form1& MainWindow() { return form1_; }

private:
    EncodingFlags flags_;
    AnsiCodePage ansi_{CodePageOfEnvironment()};
    SystemCalls calls_;
    RFTSFSO textio_{calls_, flags_, ansi_};
    std::vector<std::string> logFolders_ = LogFoldersOfUser();
    SafeWriter writer_{calls_, logFolders_};
    SafeWriter setsWriter_{calls_, logFolders_, UndoSupport::None};
    QtEventLoop eventLoop_;
    QtPrompts prompts_{eventLoop_};
    Recovery recovery_{calls_, logFolders_, prompts_};
    QtPickers pickers_{eventLoop_};
    QtFileManager fileManager_;
    IniSettingsStore settings_{calls_};
    Form1 form1_;
};

} // namespace vexmarrow

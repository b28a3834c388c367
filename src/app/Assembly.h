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

/// The parts of the program, put together as on a user's desktop. The application object must
/// exist before.
class Assembly {
public:
    Assembly();

    /// Starts the program: reports a settings file that cannot be used, restores the user's
    /// choices, offers to restore files whose run was interrupted, and shows the main window.
    /// Afterwards, `paths` are added to the list as if they had been dropped on it. Returns whether
    /// the window is visible; it is not if the user has ended the program meanwhile.
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

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ControlTable.h"
#include "engine/ReplaceText.h"
#include "filelist/FileAdding.h"
#include "filelist/FileList.h"
#include "filelist/FileRemoval.h"
#include "filelist/SampleFiles.h"
#include "run/ReplacementRun.h"
#include "run/ResultConflicts.h"
#include "run/RunInputs.h"
#include "run/UndoOperations.h"
#include "run/Utf8Hint.h"
#include "sets/SetList.h"
#include "sets/SetOperations.h"
#include "sets/SetsLoading.h"
#include "shell/Choices.h"
#include "shell/Desktop.h"
#include "shell/FolderChoice.h"
#include "shell/MousePointer.h"

#include <QCursor>
#include <QMainWindow>

#include <string>
#include <vector>

class QAction;
class QRadioButton;
class QSplitter;

namespace vexmarrow {

class AnsiCodePage;
class FileListPanel;
class FileManager;
class FileWriter;
class FindPanel;
class Pickers;
class Prompts;
class QtEventLoop;
class RFTSFSO;
class Recovery;
class SavePanel;
class SetsView;
class SettingsStore;
class StatusLine;
class Trap;

/// What the main window works with; all of it outlives the window.
struct Services {
    RFTSFSO& textio;
    FileWriter& writer;     ///< of results
    FileWriter& setsWriter; ///< of sets, which has no way back
    AnsiCodePage& ansi;
    Prompts& prompts;
    Pickers& pickers;
    SettingsStore& settings;
    FileManager& fileManager;
    QtEventLoop& eventLoop;
    Recovery& recovery;
    std::vector<std::string> logFolders; ///< of runs, to undo them
    std::u16string programFolder;        ///< of the program file, without a separator at its end
    std::u16string desktopFolder;        ///< default of the output folder
};

/// The main window: composes the panels, owns the list of files and the list of sets, and wires
/// the controls to the operations. Closing it ends the program at once, in the middle of whatever
/// is under way.
class Form1 final : public QMainWindow, private RunInputs, private MousePointer {
    Q_OBJECT

public:
    explicit Form1(const Services& services);
    ~Form1() override;
    Form1(const Form1&) = delete;
    Form1& operator=(const Form1&) = delete;

    /// Start-up, to be called once before the window is shown: its looks, the record of sample
    /// files, titles, and the user's last choices from the settings. What fails is reported and
    /// keeps its state.
    void Form_Load();

    /// Adds paths to the list as a drop does, once the event loop runs.
    void Open(const std::vector<std::u16string>& paths);

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// An option button whose state is kept.
    struct KeptOption {
        QRadioButton* button;
        Choice<bool> choice;
        ReplacementMode mode = ReplacementMode::None; ///< of a find option
    };
    using KeptOptions = std::vector<KeptOption>;

    struct Table;
    static ControlTable<Form1> Controls();

    // Handlers that do more than call one operation, by control and event.
    void PushButton1_Click();  // "Start Replacing"
    void PushButton5_Click();  // "Help"
    void PushButton8_Click();  // "Load Sample/Example Files"
    void PushButton10_Click(); // "Load Sets"
    void PushButton14_Click(); // "..." of the output folder
    void UndoLastRun_Click();
    void Forget_Click();
    void KeepMissing_Click();
    void UseUtf8_Click();
    void ListView1_DblClick();
    void ListView1_Delete(int row);
    void ListView1_Drop(const std::vector<std::u16string>& paths);
    void ListView1_MouseMove();
    void ReadAsVCards_Click();
    void TabControl1_SelectedChanged(int tab);
    void Text3_Change();
    void CodePage_Click(const QString& page);

    void LayOut();
    void AlignColumns();
    void DivideRoom();
    QSize FirstSize() const;
    void WireHandlers();
    void WireNotes();
    void OnTrigger(QAction* action, void (Form1::*handler)());
    void WatchPointer();
    void LoadSkin();
    void LoadHandCursor();
    void LoadDragPointer();
    void ChooseCodePage();
    void ApplyTable();
    void CollectOptions();
    int RestoreOptions(Trap& trap, int line, const KeptOptions& options); // returns the next line
    void SaveWhenPressed(const KeptOptions& options);
    void RestoreTab(int tab);
    void FollowOption4();
    void ShowUndo();
    void ShowCounts();
    void FilesChanged();
    void SomethingChanged();
    void ShowNotes();
    void PointTo(Shape shape); // as the mouse moves: never replaces the hourglass
    void ShowPointer(Shape shape);

    // RunInputs
    Tab SelectedTab() const override;
    std::u16string FindText() const override;
    std::u16string ReplacementText() const override;
    ReplacementMode Mode() const override;
    bool ReadAsVCards() const override;
    std::u16string OutputFolder() const override;
    bool SavesToOutputFolder() const override;
    bool SavesBesideInput() const override;

    // MousePointer
    Shape Pointer() const override { return pointer_; }
    void SetPointer(Shape shape) override;

    Services services_;
    FileList fileList_;
    SetList sets_;
    ReplaceText engine_;
    Desktop desktop_;
    FileAdding fileAdding_;
    FileRemoval fileRemoval_;
    SampleFiles samples_;
    SetOperations setOperations_;
    SetsLoading setsLoading_;
    FolderChoice outputFolder_;
    ReplacementRun run_;
    UndoOperations undo_;
    ResultConflicts resultConflicts_;
    Utf8Hint utf8Hint_;

    FileListPanel* files_;
    FindPanel* find_;
    SavePanel* save_;
    SetsView* setsView_;
    KeptOptions findOptions_;
    KeptOptions saveOptions_;
    QSplitter* parts_ = nullptr; // the list above, the rest below
    StatusLine* status_ = nullptr;
    bool isDivided_ = false; // by the user, who has moved the splitter
    bool notesAreDue_ = false;
    bool filesHaveChanged_ = true; // since the notes were made
    Shape pointer_ = Default;
    QCursor hand_; // the custom pointer
};

} // namespace vexmarrow

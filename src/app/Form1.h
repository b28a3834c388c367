// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ControlTable.h"
#include "app/Services.h"
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

class FileListPanel;
class FindPanel;
class SavePanel;
class SetsView;
class StatusLine;
class Trap;

/// The main window. Its panels make and lay out their controls; the window puts the panels
/// together, owns the list of files and the list of sets, and connects the controls to the
/// operations. Closing it ends the program, during work at the next yield or box.
class Form1 final : public QMainWindow, private RunInputs, private MousePointer {
    Q_OBJECT

public:
    explicit Form1(const Services& services);
    ~Form1() override;
    Form1(const Form1&) = delete;
    Form1& operator=(const Form1&) = delete;

    /// Prepares the window; call this once before it is shown. Loads skin and pointers, records the
    /// sample files, sets the title and restores the user's choices from the settings. A step that
    /// fails is reported and changes nothing.
    void Form_Load();

    /// Adds paths to the list as a drop does, as soon as the event loop runs.
    void Open(const std::vector<std::u16string>& paths);

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// An option button whose state is kept in the settings.
    struct KeptOption {
        QRadioButton* button = nullptr;
        Choice<bool> choice;
        int statement = 0;                            // of Form_Load that restores it
        ReplacementMode mode = ReplacementMode::None; // of a find option
    };
    using KeptOptions = std::vector<KeptOption>;

    struct Table;
    static ControlTable<Form1> Controls();

    // Handlers that do more than call one operation, named by control and event.
    void PushButton1_Click();  // "Start Replacing"
    void PushButton5_Click();  // "Help"
    void PushButton8_Click();  // "Load Sample/Example Files"
    void PushButton10_Click(); // "Load Sets"
    void PushButton14_Click(); // "..." of the output folder
    void UseUtf8_Click();
    void ListView1_Delete(int row);
    void ListView1_Drop(const std::vector<std::u16string>& paths);
    void CodePage_Click(const QString& page);

    void LayOut();
    void AlignColumns();
    void DivideRoom();
    QSize FirstSize() const;
    void WireHandlers();
    void WireNotes();
    void OnTrigger(QAction* action, void (UndoOperations::*operation)());
    void CallUndo(void (UndoOperations::*operation)());
    void WatchPointer();
    QString FileBesideProgram(std::u16string_view name) const;
    void LoadSkin();
    QCursor PointerBesideProgram(std::u16string_view name) const;
    void LoadDragPointer();
    void RestoreCodePage();
    void ApplyTable();
    void CollectOptions();
    void RestoreOptions(Trap& trap, const KeptOptions& options) const;
    void SaveWhenPressed(const KeptOptions& options);
    void RestoreTab(int tab);
    void EnableOutputFolder();
    void ShowUndo();
    void ShowCounts();
    void FilesChanged();
    void ShowNotesSoon();
    void ShowNotes();
    void PointTo(Shape shape);
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
    QSplitter* parts_ = nullptr; // between the list of files and the rest
    StatusLine* status_ = nullptr;
    bool isDivided_ = false; // whether the user has moved the splitter
    bool notesAreDue_ = false;
    bool filesHaveChanged_ = true; // since the notes were shown
    Shape pointer_ = Default;
    QCursor hand_; // the pointer over buttons
};

} // namespace vexmarrow

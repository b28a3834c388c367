// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Form1.h"

#include "app/CodePageChooser.h"
#include "app/FileListPanel.h"
#include "app/FileListView.h"
#include "app/FindPanel.h"
#include "app/Form2.h"
#include "app/LinesEdit.h"
#include "app/NormalPointer.h"
#include "app/Note.h"
#include "app/QtEventLoop.h"
#include "app/SavePanel.h"
#include "app/SetsTable.h"
#include "app/SetsView.h"
#include "app/StatusLine.h"
#include "app/Strings.h"
#include "app/WaitingBoxes.h"
#include "base/Text.h"
#include "run/InputNotes.h"
#include "shell/Choices.h"
#include "shell/ProductTexts.h"
#include "shell/Prompts.h"
#include "shell/Trap.h"
#include "textio/CodePage.h"
#include "textio/Paths.h"
#include "textio/RFTSFSO.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabWidget>

#include <utility>

namespace vexmarrow {

Form1::Form1(const Services& services)
    : services_(services),
      engine_(services.textio, services.writer, services.prompts),
      desktop_{services.prompts,     services.pickers,   services.settings,
               services.fileManager, services.eventLoop, *this},
      fileAdding_(fileList_, desktop_, services.textio),
      fileRemoval_(fileList_, desktop_),
      samples_(services.textio.Calls(), fileList_, desktop_, services.programFolder),
      setOperations_(sets_, desktop_, services.setsWriter, services.textio),
      setsLoading_(sets_, desktop_, services.textio),
      outputFolder_(desktop_, choices::kLastOutputFolder),
      run_(services.textio.Calls(), *this, fileList_, sets_, engine_, desktop_),
      undo_(services.textio.Calls(), services.logFolders, services.recovery, desktop_),
      utf8Hint_(services.textio.Calls(), fileList_, services.ansi),
      files_(new FileListPanel(fileList_, Controls(), this)),
      find_(new FindPanel(Controls(), this)),
      save_(new SavePanel(this)),
      setsView_(new SetsView(sets_, find_->Combo1, find_->Combo2, find_->Sets, find_)) {
    setObjectName(QStringLiteral("Form1"));
    LayOut();
    WireHandlers();
    WatchPointer();
    services_.eventLoop.SetProgressDisplay(
        [this](const Progress& progress) { status_->ShowProgress(progress); });
}

Form1::~Form1() {
    services_.eventLoop.SetProgressDisplay(nullptr);
    SetPointer(Default);
    // The views use the lists, which are members and would be destroyed before the views.
    delete centralWidget();
}

/// Queues the operation, so that an assistive program gets its answer before a box is shown.
void Form1::OnTrigger(QAction* action, void (UndoOperations::*operation)()) {
    const auto handle = [this, operation] {
        if (!IsBehindBox(*this)) {
            RunHandler([&] { CallUndo(operation); });
        }
    };
    connect(action, &QAction::triggered, this, handle, Qt::QueuedConnection);
}

void Form1::WireHandlers() {
    OnTrigger(status_->Forget, &UndoOperations::Forget);
    OnTrigger(status_->KeepMissing, &UndoOperations::GiveUpMissing);
    const QAbstractItemModel* const rows = files_->ListView1->model();
    connect(rows, &QAbstractItemModel::rowsInserted, this, &Form1::FilesChanged);
    connect(rows, &QAbstractItemModel::rowsRemoved, this, &Form1::FilesChanged);
    connect(rows, &QAbstractItemModel::modelReset, this, &Form1::FilesChanged);
    WireNotes();
    connect(status_->CodePage, &CodePageChooser::Chosen, this,
            [this](const QString& page) { RunHandler([&] { CodePage_Click(page); }); });
    connect(files_->ListView1, &QTreeView::doubleClicked, this,
            [this] { ListView1_Delete(files_->ListView1->currentIndex().row()); });
    connect(files_->ListView1, &FileListView::DeletePressed, this, &Form1::ListView1_Delete);
    connect(files_->ListView1, &FileListView::MouseMoved, this, [this] { PointTo(Default); });
    connect(
        files_->ListView1, &FileListView::PathsDropped, this,
        [this](const FileListView::Paths& paths) { RunHandler([&] { ListView1_Drop(paths); }); });
}

void Form1::Open(const std::vector<std::u16string>& paths) {
    QMetaObject::invokeMethod(
        this, [this, paths] { RunHandler([&] { ListView1_Drop(paths); }); }, Qt::QueuedConnection);
}

/// Shows the notes again when something changes that they depend on, besides the list of files.
void Form1::WireNotes() {
    connect(setsView_, &SetsView::Changed, this, [this] {
        ShowCounts();
        ShowNotesSoon();
    });
    connect(find_->Text1, &QPlainTextEdit::textChanged, this, &Form1::ShowNotesSoon);
    connect(find_->Text2, &QPlainTextEdit::textChanged, this, &Form1::ShowNotesSoon);
    connect(find_->TabControl1, &QTabWidget::currentChanged, this, &Form1::ShowNotesSoon);
    connect(save_->Text3, &QLineEdit::textChanged, this, &Form1::ShowNotesSoon);
    for (const QRadioButton* const option : findChildren<QRadioButton*>()) {
        connect(option, &QRadioButton::toggled, this, &Form1::ShowNotesSoon);
    }
    connect(find_->ReadAsVCards, &QCheckBox::toggled, this, &Form1::ShowNotesSoon);
}

void Form1::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        undo_.Refresh();
        ShowUndo();
        DivideRoom();
    }
    QMainWindow::showEvent(event);
}

void Form1::closeEvent(QCloseEvent* event) {
    services_.eventLoop.End();
    event->accept();
    CloseBoxes();
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window != this) {
            window->close();
        }
    }
    QCoreApplication::quit();
}

void Form1::PushButton1_Click() {
    if (undo_.IsInProgress()) {
        return;
    }
    fileList_.Announce(); // during a drop: the user must see all files that the run changes
    run_.Start();
    if (!run_.IsInProgress()) { // which it still is if this press came during a run
        undo_.Refresh();
        ShowUndo();
        ShowNotesSoon(); // a scan during the run may have removed the hourglass already
    }
}

void Form1::PushButton5_Click() {
    Trap trap(services_.prompts, u"Form1.PushButton5_Click");
    trap.Do(1, [&] { services_.prompts.ShowMessage(HelpText()); });
}

void Form1::PushButton8_Click() {
    Trap trap(services_.prompts, u"Form1.PushButton8_Click");
    trap.Do(1, [&] { samples_.Load(); });
    trap.Do(2, [&] { find_->Text1->SetText(u"a"); });
    trap.Do(3, [&] { find_->Text2->SetText(u"b"); });
    trap.Do(4, [&] { find_->TabControl1->setCurrentIndex(0); });
}

void Form1::PushButton10_Click() {
    Trap trap(services_.prompts, u"Form1.PushButton10_Click");
    trap.Do(1, [&] {
        const auto pointer = ShowNormalPointer();
        Form2 form2(setsLoading_, services_.prompts, hand_, this);
        form2.Form_Load();
        WaitFor(form2);
        services_.eventLoop.ThrowIfEnded();
    });
}

void Form1::PushButton14_Click() {
    Trap trap(services_.prompts, u"Form1.PushButton14_Click");
    const std::u16string folder = outputFolder_.Ask(trap);
    if (!folder.empty()) {
        trap.Do(4, [&] { save_->Text3->setText(ToQString(WithSeparator(folder))); });
    }
}

/// Calls an operation of undo_ and shows what is possible then; does nothing during a run. The
/// operation itself does nothing under the hourglass, but a scan during the run may remove that.
void Form1::CallUndo(void (UndoOperations::*operation)()) {
    if (!run_.IsInProgress()) {
        (undo_.*operation)();
        ShowUndo();
    }
}

/// Offers in the status line what can be undone; during work, nothing.
void Form1::ShowUndo() {
    const bool isIdle = !IsBusy() && !run_.IsInProgress() && !undo_.IsInProgress();
    status_->ShowUndo({isIdle && undo_.IsPossible(), isIdle && undo_.CanForget(),
                       isIdle && undo_.Missing() > 0, ToQString(undo_.Hint()),
                       ToQString(undo_.MissingNotice())});
}

void Form1::UseUtf8_Click() {
    CodePage_Click(QStringLiteral("UTF-8"));
    status_->CodePage->setFocus(Qt::OtherFocusReason);
}

void Form1::ShowCounts() {
    status_->ShowCounts(fileList_.Count(), sets_.FindTexts().size());
}

void Form1::FilesChanged() {
    ShowCounts();
    filesHaveChanged_ = true;
    ShowNotesSoon();
}

/// Shows the notes again, once for all changes before the next event.
void Form1::ShowNotesSoon() {
    if (!std::exchange(notesAreDue_, true)) {
        QMetaObject::invokeMethod(this, &Form1::ShowNotes, Qt::QueuedConnection);
    }
}

/// Says in notes what a run would do that the user might not expect, and in the text boxes what
/// they are for. Does nothing during work, which calls this when it ends.
void Form1::ShowNotes() {
    notesAreDue_ = false;
    if (IsBusy() || run_.IsInProgress()) {
        return;
    }
    if (std::exchange(filesHaveChanged_, false)) {
        resultConflicts_.Find(fileList_);
        utf8Hint_.Forget();
    }
    const RunInputs& inputs = *this;
    for (LinesEdit* const box : {find_->Text1, find_->Text2}) {
        box->setPlaceholderText(LinesAreTexts(inputs) ? QStringLiteral("one text a line")
                                                      : QStringLiteral("one text"));
        box->viewport()->update(); // the toolkit does not repaint the placeholder
    }
    find_->TextsNote->Say(NoteOnTexts(inputs));
    find_->SetsNote->Say(NoteOnSets(inputs, sets_));
    find_->OptionsNote->Say(NoteOnOptions(inputs));
    save_->ResultsNote->Say(resultConflicts_.Note(inputs));
    status_->ShowUtf8Hint(utf8Hint_.Applies(inputs, sets_));
}

void Form1::ListView1_Delete(int row) {
    fileRemoval_.RemoveRow(static_cast<std::size_t>(row) + 1);
}

void Form1::ListView1_Drop(const std::vector<std::u16string>& paths) {
    fileAdding_.AddDropped(paths);
    if (!IsBusy()) {
        status_->ClearProgress();
    }
}

void Form1::EnableOutputFolder() {
    save_->Frame4->setEnabled(SavesToOutputFolder());
}

void Form1::CodePage_Click(const QString& page) {
    // Error reports name this handler after the control's first name, which support knows.
    Trap trap(services_.prompts, u"Form1.Combo3_Click");
    const std::u16string name = ToText(page);
    if (name == services_.ansi.Page().Name() &&
        name == LoadChoice(services_.settings, choices::kCodePage)) {
        return;
    }
    if (trap.Do(1, [&] { services_.ansi.Choose(name); })) {
        trap.Do(2, [&] { SaveChoice(services_.settings, choices::kCodePage, name); });
    }
    status_->CodePage->ShowPage(services_.ansi.Page().Name());
    ShowNotesSoon();
}

std::u16string Form1::FindText() const {
    return find_->Text1->Text();
}

std::u16string Form1::ReplacementText() const {
    return find_->Text2->Text();
}

std::u16string Form1::OutputFolder() const {
    return ToText(save_->Text3->text());
}

bool Form1::SavesToOutputFolder() const {
    return save_->Option4->isChecked();
}

bool Form1::SavesBesideInput() const {
    return save_->Option5->isChecked();
}

Tab Form1::SelectedTab() const {
    return static_cast<Tab>(find_->TabControl1->currentIndex());
}

bool Form1::ReadAsVCards() const {
    return find_->ReadAsVCards->isChecked();
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Form1.h"

#include "app/Boxes.h"
#include "app/CodePageChooser.h"
#include "app/Controls.h"
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
#include "base/Text.h"
#include "run/RunNotes.h"
#include "shell/Prompts.h"
#include "shell/SettingsStore.h"
#include "shell/Titles.h"
#include "shell/Trap.h"
#include "shell/Values.h"
#include "textio/CodePage.h"
#include "textio/RFTSFSO.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

#include <utility>

namespace vexmarrow {

Form1::Form1(const Services& services)
    : services_(services),
      engine_(services.textio, services.writer, services.prompts),
      fileAdding_(fileList_, services.prompts, services.pickers, services.settings,
                  services.eventLoop, *this, services.textio),
      fileRemoval_(fileList_, services.prompts, services.eventLoop, *this),
      samples_(services.textio.Calls(), fileList_, services.prompts, services.settings,
               services.fileManager, services.programFolder),
      setOperations_(sets_, services.prompts, services.pickers, services.setsWriter,
                     services.textio),
      setsLoading_(sets_, services.prompts, services.pickers, services.settings, services.textio),
      outputChoice_(services.prompts, services.pickers, services.settings),
      run_(services.textio.Calls(), *this, fileList_, sets_, engine_, services.prompts,
           services.eventLoop, *this),
      undo_(services.textio.Calls(), services.logFolders, services.recovery, services.prompts,
            services.eventLoop, *this),
      utf8Look_(services.textio.Calls(), fileList_, services.ansi),
      files_(new FileListPanel(fileList_, this)),
      find_(new FindPanel(this)),
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
    // The views look at the lists, which are members and go before the children would.
    delete centralWidget();
}

void Form1::OnClick(QAbstractButton* button, void (Form1::*handler)()) {
    connect(button, &QAbstractButton::clicked, this, [this, handler] {
        if (!IsBehindBox(*this)) {
            RunHandler([&] { (this->*handler)(); });
        }
    });
}

/// Assistive programs, too, get their answer before the handler shows a box.
void Form1::OnTrigger(QAction* action, void (Form1::*handler)()) {
    const auto handle = [this, handler] {
        if (!IsBehindBox(*this)) {
            RunHandler([&] { (this->*handler)(); });
        }
    };
    connect(action, &QAction::triggered, this, handle, Qt::QueuedConnection);
}

void Form1::WireHandlers() {
    OnClick(files_->PushButton13, &Form1::PushButton13_Click);
    OnClick(files_->PushButton3, &Form1::PushButton3_Click);
    OnClick(files_->PushButton5, &Form1::PushButton5_Click);
    OnClick(find_->PushButton7, &Form1::PushButton7_Click);
    OnClick(find_->PushButton6, &Form1::PushButton6_Click);
    OnClick(find_->PushButton4, &Form1::PushButton4_Click);
    OnClick(find_->PushButton12, &Form1::PushButton12_Click);
    OnClick(save_->PushButton14, &Form1::PushButton14_Click);
    OnClick(save_->PushButton1, &Form1::PushButton1_Click);
    OnClick(files_->PushButton2, &Form1::PushButton2_Click);
    OnClick(files_->PushButton8, &Form1::PushButton8_Click);
    OnClick(files_->PushButton9, &Form1::PushButton9_Click);
    OnClick(files_->PushButton11, &Form1::PushButton11_Click);
    OnClick(files_->PushButton17, &Form1::PushButton17_Click);
    OnClick(find_->PushButton10, &Form1::PushButton10_Click);
    OnClick(status_->UndoLastRun, &Form1::UndoLastRun_Click);
    OnClick(status_->UseUtf8, &Form1::UseUtf8_Click);
    OnTrigger(status_->Forget, &Form1::Forget_Click);
    OnTrigger(status_->KeepMissing, &Form1::KeepMissing_Click);
    const QAbstractItemModel* const rows = files_->ListView1->model();
    connect(rows, &QAbstractItemModel::rowsInserted, this, &Form1::FilesChanged);
    connect(rows, &QAbstractItemModel::rowsRemoved, this, &Form1::FilesChanged);
    connect(rows, &QAbstractItemModel::modelReset, this, &Form1::FilesChanged);
    WireNotes();
    connect(status_->Combo3, &CodePageChooser::Chosen, this,
            [this](const QString& page) { RunHandler([&] { Combo3_Click(page); }); });
    connect(files_->ListView1, &QTreeView::doubleClicked, this, &Form1::ListView1_DblClick);
    connect(files_->ListView1, &FileListView::DeletePressed, this, &Form1::ListView1_Delete);
    connect(files_->ListView1, &FileListView::MouseMoved, this, &Form1::ListView1_MouseMove);
    connect(
        files_->ListView1, &FileListView::PathsDropped, this,
        [this](const FileListView::Paths& paths) { RunHandler([&] { ListView1_Drop(paths); }); });
}

void Form1::Open(const std::vector<std::u16string>& paths) {
    QMetaObject::invokeMethod(
        this, [this, paths] { RunHandler([&] { ListView1_Drop(paths); }); }, Qt::QueuedConnection);
}

/// What the notes are about, besides the list of files.
void Form1::WireNotes() {
    connect(setsView_, &SetsView::Changed, this, [this] {
        ShowCounts();
        SomethingChanged();
    });
    connect(find_->Text1, &QPlainTextEdit::textChanged, this, &Form1::SomethingChanged);
    connect(find_->Text2, &QPlainTextEdit::textChanged, this, &Form1::SomethingChanged);
    connect(find_->TabControl1, &QTabWidget::currentChanged, this, &Form1::SomethingChanged);
    connect(save_->Text3, &QLineEdit::textChanged, this, &Form1::SomethingChanged);
    for (const QRadioButton* const option :
         {find_->Option1, find_->Option2, find_->Option3, save_->Option4, save_->Option5}) {
        connect(option, &QRadioButton::toggled, this, &Form1::SomethingChanged);
    }
    connect(find_->ReadAsVCards, &QCheckBox::toggled, this, &Form1::SomethingChanged);
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
    fileList_.Announce(); // in the middle of a drop: a run changes no file that is not in sight
    run_.Start();
    if (!run_.IsInProgress()) { // or this was another press during a run
        undo_.Refresh();
        ShowUndo();
        SomethingChanged(); // a scan within the run may have taken the hourglass away
    }
}

void Form1::PushButton2_Click() {
    fileRemoval_.ClearList();
}

void Form1::PushButton3_Click() {
    fileAdding_.AddAllFilesInFolder();
}

void Form1::PushButton4_Click() {
    setOperations_.ClearSets();
}

void Form1::PushButton5_Click() {
    Trap trap(services_.prompts, u"Form1.PushButton5_Click");
    trap.Do(1, [&] { services_.prompts.ShowMessage(HelpText()); });
}

void Form1::PushButton6_Click() {
    setOperations_.RemoveSelectedSet(find_->Combo1->currentIndex(), find_->Combo2->currentIndex());
}

void Form1::PushButton7_Click() {
    setOperations_.AddSet();
}

void Form1::PushButton8_Click() {
    Trap trap(services_.prompts, u"Form1.PushButton8_Click");
    trap.Do(1, [&] { samples_.Load(); });
    trap.Do(2, [&] { find_->Text1->SetText(u"a"); });
    trap.Do(3, [&] { find_->Text2->SetText(u"b"); });
    trap.Do(4, [&] { find_->TabControl1->setCurrentIndex(0); });
}

void Form1::PushButton9_Click() {
    fileAdding_.LoadListFiles();
}

void Form1::PushButton10_Click() {
    Trap trap(services_.prompts, u"Form1.PushButton10_Click");
    trap.Do(1, [&] {
        const NormalPointer pointer;
        Form2 form2(setsLoading_, services_.prompts, hand_, this);
        form2.Form_Load();
        WaitFor(form2);
        services_.eventLoop.ThrowIfEnded();
    });
}

void Form1::PushButton11_Click() {
    fileRemoval_.RemoveFilenamesNotContaining();
}

void Form1::PushButton12_Click() {
    setOperations_.SaveSets();
}

void Form1::PushButton13_Click() {
    fileAdding_.AddFiles();
}

void Form1::PushButton14_Click() {
    outputChoice_.Browse(
        [this](const std::u16string& folder) { save_->Text3->setText(ToQString(folder)); });
}

void Form1::PushButton17_Click() {
    fileRemoval_.RemoveFilenamesContaining();
}

void Form1::UndoLastRun_Click() {
    if (!run_.IsInProgress()) { // whose scan may have changed the pointer
        undo_.Start();
        ShowUndo();
    }
}

void Form1::Forget_Click() {
    if (!run_.IsInProgress()) {
        undo_.Forget();
        ShowUndo();
    }
}

void Form1::KeepMissing_Click() {
    if (!run_.IsInProgress()) {
        undo_.GiveUpMissing();
        ShowUndo();
    }
}

/// Offers in the status line what can be undone, unless work is going on.
void Form1::ShowUndo() {
    const bool isIdle = pointer_ != Hourglass && !run_.IsInProgress() && !undo_.IsInProgress();
    status_->ShowUndo({isIdle && undo_.IsPossible(), isIdle && undo_.CanForget(),
                       isIdle && undo_.Missing() > 0, ToQString(undo_.Hint()),
                       ToQString(undo_.MissingNotice())});
}

void Form1::UseUtf8_Click() {
    Combo3_Click(QStringLiteral("UTF-8"));
    status_->Combo3->setFocus(Qt::OtherFocusReason);
}

void Form1::ShowCounts() {
    status_->ShowCounts(fileList_.Count(), sets_.FindTexts().size());
}

void Form1::FilesChanged() {
    ShowCounts();
    filesHaveChanged_ = true;
    SomethingChanged();
}

/// Makes the notes anew, once for all that changes before the next event.
void Form1::SomethingChanged() {
    if (!std::exchange(notesAreDue_, true)) {
        QMetaObject::invokeMethod(this, &Form1::ShowNotes, Qt::QueuedConnection);
    }
}

/// Says in quiet lines what a run would do that the user might not expect, and what the boxes are
/// for. Work that is going on is not disturbed; its end comes back to this.
void Form1::ShowNotes() {
    notesAreDue_ = false;
    if (pointer_ == Hourglass || run_.IsInProgress()) {
        return;
    }
    if (std::exchange(filesHaveChanged_, false)) {
        resultNotes_.Look(fileList_);
        utf8Look_.Forget();
    }
    const RunInputs& inputs = *this;
    for (LinesEdit* const box : {find_->Text1, find_->Text2}) {
        box->setPlaceholderText(LinesAreTexts(inputs) ? QStringLiteral("one text a line")
                                                      : QStringLiteral("one text"));
        box->viewport()->update(); // which the toolkit forgets
    }
    find_->TextsNote->Say(NoteOnTexts(inputs));
    find_->SetsNote->Say(NoteOnSets(inputs, sets_));
    find_->OptionsNote->Say(NoteOnOptions(inputs));
    save_->ResultsNote->Say(resultNotes_.Note(inputs));
    status_->ShowUtf8Hint(utf8Look_.IsSeen(inputs, sets_));
}

void Form1::ListView1_DblClick() {
    ListView1_Delete(files_->ListView1->currentIndex().row()); // which does the same
}

void Form1::ListView1_Delete(int row) {
    fileRemoval_.RemoveRow(static_cast<std::size_t>(row) + 1);
}

void Form1::ListView1_Drop(const std::vector<std::u16string>& paths) {
    fileAdding_.AddDropped(paths);
    if (pointer_ != Hourglass) {
        status_->ClearProgress();
    }
}

void Form1::ListView1_MouseMove() {
    PointTo(Default);
}

void Form1::SaveModeOptions() {
    SettingsStore& settings = services_.settings;
    settings.SaveSetting(u"Option1", TextFromBoolean(find_->Option1->isChecked()));
    settings.SaveSetting(u"Option2", TextFromBoolean(find_->Option2->isChecked()));
    settings.SaveSetting(u"Option3", TextFromBoolean(find_->Option3->isChecked()));
}

void Form1::SaveOutputOptions() {
    outputChoice_.SaveOptions(SavesToOutputFolder(), SavesBesideInput());
    FollowOption4();
}

void Form1::ReadAsVCards_Click() {
    services_.settings.SaveSetting(u"ReadAsVCards", TextFromBoolean(ReadAsVCards()));
}

void Form1::FollowOption4() {
    save_->Frame4->setEnabled(SavesToOutputFolder());
}

void Form1::TabControl1_SelectedChanged(int tab) {
    services_.settings.SaveSetting(u"TabSel", Decimal(tab));
}

void Form1::Text3_Change() {
    outputChoice_.SaveFolder(OutputFolder());
}

void Form1::Combo3_Click(const QString& page) {
    Trap trap(services_.prompts, u"Form1.Combo3_Click");
    const std::u16string name = ToText(page);
    if (name == services_.ansi.Page().Name() &&
        name == services_.settings.GetSetting(kCodePageSetting, u"")) {
        return;
    }
    if (trap.Do(1, [&] { services_.ansi.Choose(name); })) {
        trap.Do(2, [&] { services_.settings.SaveSetting(kCodePageSetting, name); });
    }
    status_->Combo3->ShowPage(services_.ansi.Page().Name());
    SomethingChanged();
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

ReplacementMode Form1::Mode() const {
    return find_->Option1->isChecked()   ? ReplacementMode::FieldsOnly
           : find_->Option2->isChecked() ? ReplacementMode::ValuesOnly
           : find_->Option3->isChecked() ? ReplacementMode::WholeText
                                         : ReplacementMode::None;
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

void Form1::SetPointer(Shape shape) {
    if (shape != Hourglass) {
        status_->ClearProgress(); // also at the end of a run that had a scan inside
    }
    ShowPointer(shape);
}

void Form1::PointTo(Shape shape) {
    if (pointer_ != Hourglass && pointer_ != shape) {
        ShowPointer(shape);
    }
}

void Form1::ShowPointer(Shape shape) {
    const bool wasBusy = std::exchange(pointer_, shape) == Hourglass;
    const bool busy = shape == Hourglass;
    if (busy && !wasBusy) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    } else if (wasBusy && !busy) {
        QGuiApplication::restoreOverrideCursor();
    }
    if (busy != wasBusy) {
        ShowUndo();
        utf8Look_.Forget(); // the files may hold other texts by now
        SomethingChanged();
    }
    if (shape == Custom) {
        setCursor(hand_);
    } else if (shape == Arrow) {
        setCursor(Qt::ArrowCursor);
    } else {
        unsetCursor();
    }
}

} // namespace vexmarrow

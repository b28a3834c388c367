// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/QtPrompts.h"
#include "app/WaitingBoxes.h"

#include <QAction>
#include <QGuiApplication>

namespace vexmarrow::test {
namespace {

const QString kNothingToUndo = u"There is no run to undo."_s;
const QString kDone = u"Done."_s;
const QString kRoutineAt = u"in Zentavor2021/08/31.ReplaceText.%1 at line %2"_s;

struct ModeCase {
    const char* name;
    const char* option;
    Tab tab;
    bool cards;
    std::string result;
};
const std::vector<ModeCase> kModeCases{
    {"fields", "Option1", kSinglePair, false, "Nb;b=b:banana\r\nTELb:1a\r\n"},
    {"values", "Option2", kSinglePair, false, "Na;a=a:bbnbnb\r\nTELa:1b\r\n"},
    {"both", "Option3", kSinglePair, false, "Nb;b=b:bbnbnb\nTELb:1b:2b"},
    {"sets", "Option1", kSets, false, "Nc;c=c:ccncnc\nTELc:1c:2c"},
    {"fields of cards", "Option1", kSinglePair, true, "Nb;b=b:banana\nTELb:1a:2a"},
    {"values of cards", "Option2", kSinglePair, true, "Na;a=a:bbnbnb\nTELa:1b:2b"},
    {"both of cards", "Option3", kSinglePair, true, "Nb;b=b:bbnbnb\nTELb:1b:2b"},
    {"sets in cards", "Option1", kSets, true, "Nc;c=c:ccncnc\nTELc:1c:2c"},
};

} // namespace

/// "Start Replacing" through the real buttons and boxes of the window.
class RunTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        folder_ = std::make_unique<TestFolder>();
        folder_->MakeFolder("out");
        folder_->SetMode("out", 0777);
        window_ = std::make_unique<Window>();
        window_->Open();
        window_->SetText1(u"a");
        window_->SetText2(u"b");
        window_->SetText3(folder_->Path("out"));
    }

    void cleanup() {
        QVERIFY(QGuiApplication::overrideCursor() == nullptr);
        QCOMPARE(window_->Find<QLabel>("Progress")->text(), QString());
        QVERIFY(window_->Find<QWidget>("ProgressBar")->isHidden());
        QCOMPARE(window_->calls.openFiles, 0);
        window_.reset();
        folder_.reset();
    }

    void EveryMode_data() { AddRows(kModeCases); }
    void EveryMode() {
        const ModeCase& row = CurrentRow(kModeCases);
        const std::string before = "Na;a=a:banana\nTELa:1a:2a";
        window_->AddSet(u"a::b");
        window_->AddSet(u"b::c");
        window_->SelectTab(row.tab);
        window_->Press(row.option);
        window_->Find<QCheckBox>("ReadAsVCards")->setChecked(row.cards);
        AddFile("one.vcf", before);
        QCOMPARE(Run(), kDone);
        QCOMPARE(folder_->Read("out/one.vcf"), row.result);
        QCOMPARE(folder_->Read("one.vcf"), before);
        window_->Press("Option5");
        QCOMPARE(Run(), kDone);
        QCOMPARE(folder_->Read("one.vcf"), row.result);
    }

    void MissingAndEmptyFiles() {
        AddFile("gone.vcf", "a");
        AddFile("empty.vcf", "");
        AddFile("whole.vcf", "a");
        folder_->Remove("gone.vcf");
        QCOMPARE(Run(), kDone); // such files are skipped without a message
        QCOMPARE(folder_->Names("out"), std::vector<std::string>{"whole.vcf"});
        window_->SelectTab(kSets);
        QCOMPARE(Run(), kRoutineAt.arg(u"ReplaceTextInFileCombo"_s).arg(1) + u'|' + kDone);
        QCOMPARE(folder_->Read("out/empty.vcf"), std::string());
        QVERIFY(!folder_->Exists("out/gone.vcf"));
    }

    void NoPermission() {
        AddFile("secret.vcf", "a");
        AddFile("kept.vcf", "a");
        folder_->SetMode("secret.vcf", 0);
        folder_->SetMode("kept.vcf", 0444);
        const Unprivileged somebody;
        QCOMPARE(Run(), kDone);
        QCOMPARE(folder_->Names("out"), std::vector<std::string>{"kept.vcf"});
        window_->Press("Option5");
        const QString whole = u"ReplaceTextInFile"_s;
        QCOMPARE(Run(), kRoutineAt.arg(whole).arg(6) + u'|' + kDone);
        QCOMPARE(folder_->Read("kept.vcf"), std::string("a"));
        window_->SelectTab(kSets);
        const QString combo = u"ReplaceTextInFileCombo"_s;
        QCOMPARE(Run(),
                 kRoutineAt.arg(combo).arg(1) + u'|' + kRoutineAt.arg(combo).arg(4) + u'|' + kDone);
    }

    void MoreFindLinesThanReplaceLines() {
        AddFile("one.vcf", "aAxX");
        window_->SetText1(u"a\nx\n"); // the empty last line lacks a replace text as well
        const QString report = kRoutineAt.arg(u"ReplaceTextInFile"_s).arg(4);
        QCOMPARE(Run(), report + u'|' + report + u'|' + kDone);
        QCOMPARE(folder_->Read("out/one.vcf"), std::string("bAxX"));
    }

    void WindowUsedDuringARun() {
        for (const char* const name : {"1.vcf", "2.vcf", "3.vcf", "4.vcf"}) {
            AddFile(name, "aq:aq");
        }
        AfterResult("1.vcf", [&] {
            QVERIFY(QGuiApplication::overrideCursor() != nullptr);
            QVERIFY(window_->Find<QLabel>("Progress")->text().contains(u" of 4"_s));
            QVERIFY(window_->Find<QWidget>("ProgressBar")->isVisible());
            window_->Press("PushButton1"); // refused
            window_->SetText1(u"q");
        });
        AfterResult("2.vcf", [&] { window_->SetText2(u"Q"); });
        AfterResult("3.vcf", [&] {
            window_->Press("Option1");
            window_->pickers.folders = {folder_->Path("out")}; // a scan inside the run
            window_->Press("PushButton3");
        });
        QCOMPARE(Run(), kDone);
        QCOMPARE(folder_->Read("out/1.vcf"), std::string("bq:bq"));
        QCOMPARE(folder_->Read("out/2.vcf"), std::string("ab:ab"));
        QCOMPARE(folder_->Read("out/3.vcf"), std::string("aQ:aQ"));
        QCOMPARE(folder_->Read("out/4.vcf"), std::string("aQ:aq\r\n"));
        QCOMPARE(Run(), kDone); // it can be started again
    }

    void SetsEditedDuringARun() {
        AddFile("1.vcf", "a");
        AddFile("2.vcf", "a");
        window_->AddSet(u"a::first");
        window_->SelectTab(kSets);
        AfterResult("1.vcf", [&] {
            window_->Press("PushButton4");
            window_->AddSet(u"a::second");
        });
        QCOMPARE(Run(), kDone);
        QCOMPARE(folder_->Read("out/1.vcf"), std::string("first"));
        QCOMPARE(folder_->Read("out/2.vcf"), std::string("second"));
    }

    void CodePageChosenDuringARun() {
        AddFile("1.vcf", "\xE9");
        AddFile("2.vcf", "\xE9");
        window_->SetText1(u"\u00E9");
        QComboBox* const pages = window_->CodePages();
        const int cyrillic = pages->findData(u"windows-1251"_s);
        AfterResult("1.vcf", [&] { pages->setCurrentIndex(cyrillic); });
        QCOMPARE(Run(), kDone);
        QCOMPARE(folder_->Read("out/1.vcf") + folder_->Read("out/2.vcf"), std::string("b\xE9"));
    }

    void ReadAsVCardsFromTheNextFileOn() {
        AddFile("1.vcf", "a:a:a");
        AddFile("2.vcf", "a:a:a");
        window_->Press("Option2");
        AfterResult("1.vcf", [&] { window_->Press("ReadAsVCards"); });
        QCOMPARE(Run(), kDone);
        QCOMPARE(folder_->Read("out/1.vcf") + folder_->Read("out/2.vcf"),
                 std::string("a:b\r\na:b:b"));
    }

    void ClosedDuringARun() {
        for (const char* const name : {"1.vcf", "2.vcf", "3.vcf"}) {
            AddFile(name, "a");
        }
        AfterResult("2.vcf", [&] { window_->form->close(); });
        QCOMPARE(Run(), QString()); // there is no "Done."
        QCOMPARE(folder_->Names("out"), (std::vector<std::string>{"1.vcf", "2.vcf"}));
        Reopen();
    }

    void ClosedWhileReportsCome() {
        window_ = std::make_unique<Window>();
        QtPrompts boxes(window_->eventLoop);
        window_->shown = &boxes;
        window_->Open();
        boxes.SetOwner(window_->form.get());
        window_->SetText1(u"a");
        window_->SetText3(folder_->Path("out"));
        window_->Press("Option1");
        std::string lines;
        for (int i = 0; i < 3'000; ++i) {
            lines += "a:a\r\n";
        }
        AddFile("1.vcf", lines);
        AddFile("2.vcf", "a");
        folder_->MakeFolder("out/1.vcf"); // each line fails
        int reports = 0;
        const auto isOpen = [] { return TopBox() != nullptr; };
        const std::function<void()> meet = [&] {
            QVERIFY(QGuiApplication::modalWindow() == nullptr); // the window can be closed
            if (++reports == 20) {
                window_->form->close();
            } else {
                TopBox()->close();
                Once(isOpen, meet);
            }
        };
        Once(isOpen, meet);
        window_->Press("PushButton1");
        QCOMPARE(reports, 20);
        QVERIFY(TopBox() == nullptr);
        QCOMPARE(folder_->Names("out"), std::vector<std::string>{"1.vcf"});
        Reopen();
    }

    void ClosedDuringAScan() {
        for (int i = 0; i < 50; ++i) {
            folder_->Write("tree/" + std::to_string(i) + "/card.vcf", "a");
        }
        window_->pickers.folders = {folder_->Path("tree")};
        const auto seen = [&] { return !window_->Find<QLabel>("Progress")->text().isEmpty(); };
        Once(seen, [&] { window_->form->close(); });
        window_->Press("PushButton3");
        QCOMPARE(window_->Rows(), 0);
        Reopen();
        window_->pickers.folders = {folder_->Path("tree")};
        window_->Press("PushButton3");
        QCOMPARE(window_->Rows(), 50);
    }

    void Undone() {
        QCOMPARE(Offers() + UndoTip(), kNothingToUndo);
        AddFile("1.vcf", "a");
        AddFile("2.vcf", "a");
        window_->Press("Option5");
        Once([&] { return folder_->Read("1.vcf") == "b"; },
             [&] {
                 QCOMPARE(Offers(), QString());
                 window_->pickers.folders = {folder_->Path("out")}; // a scan inside the run
                 window_->Press("PushButton3");
                 QCOMPARE(Offers(), QString());
                 Trigger("Forget"); // refused
             });
        QCOMPARE(Run(), kDone);
        QCOMPARE(Offers(), u"undo forget"_s);
        QVERIFY2(UndoTip().startsWith(u"Undo the run of "_s) && UndoTip().endsWith(u": 2 files."_s),
                 qPrintable(UndoTip()));
        window_->prompts.answers = {Answer::Yes};
        Once([&] { return folder_->Read("2.vcf") == "a"; },
             [&] {
                 QCOMPARE(Offers(), QString());
                 QVERIFY(QGuiApplication::overrideCursor() != nullptr);
                 QVERIFY(window_->Find<QLabel>("Progress")->text().endsWith(u"of 2"_s));
                 window_->Press("PushButton1"); // refused
             });
        window_->Press("UndoLastRun");
        const QString boxes = window_->Boxes();
        QVERIFY2(boxes.startsWith(u"Undo the run of "_s) &&
                     boxes.endsWith(u" has been undone."_s) && boxes.count(u'|') == 1,
                 qPrintable(boxes));
        QCOMPARE(folder_->Read("1.vcf") + folder_->Read("2.vcf"), std::string("aa"));
        QCOMPARE(Offers() + UndoTip(), kNothingToUndo);

        QCOMPARE(Run(), kDone);
        QCOMPARE(Offers(), u"undo forget"_s);
        window_->prompts.answers = {Answer::Yes};
        Trigger("Forget");
        QVERIFY(window_->Boxes().startsWith(u"Delete the old texts"_s));
        QCOMPARE(Offers() + UndoTip(), kNothingToUndo);
        QCOMPARE(folder_->Read("1.vcf") + folder_->Read("2.vcf"), std::string("bb"));
    }

    void ClosedDuringAnUndo() {
        for (const char* const name : {"1.vcf", "2.vcf", "3.vcf"}) {
            AddFile(name, "a");
        }
        window_->Press("Option5");
        QCOMPARE(Run(), kDone);
        window_->prompts.answers = {Answer::Yes};
        Once([&] { return folder_->Read("2.vcf") == "a"; }, [&] { window_->form->close(); });
        window_->Press("UndoLastRun");
        QCOMPARE(window_->Boxes().count(u'|'), 0); // there is only the question
        QCOMPARE(folder_->Read("1.vcf") + folder_->Read("2.vcf"), std::string("ba"));
        Reopen();
    }

    void MissingFilesOfAnInterruptedRun() {
        window_ = std::make_unique<Window>();
        folder_->Write("card.vcf", "old");
        QVERIFY(!InChildProcess([&] {
            window_->calls.KillAt(FaultySystemCalls::kWriteAt, 3);
            const auto file = window_->writer.Begin(folder_->Path("card.vcf"), nullptr);
            file->Append("longer than before");
            file->Seal();
            file->Commit();
        }));
        folder_->Remove("card.vcf");
        window_->Open();
        const auto* const notice = window_->Find<QLabel>("Missing");
        QVERIFY(notice->isVisible());
        QCOMPARE(notice->accessibleName(), u"1 file of an interrupted run is missing"_s);
        QCOMPARE(Offers(), u"forget keep"_s);
        QVERIFY(UndoTip().startsWith(u"The run of "_s));
        QCOMPARE(window_->Boxes(), QString());
        Trigger("KeepMissing");
        QVERIFY(window_->Boxes().contains(ToQString(folder_->Path("card.vcf"))));
        QVERIFY(!notice->isVisible());
        QCOMPARE(Offers() + u' ' + UndoTip(), u"forget "_s + kNothingToUndo); // forgets the copy
    }

    void ANarrowWindowStaysNarrow() {
        QFont font = window_->form->font();
        font.setPointSizeF(18);
        window_->form->setFont(font);
        window_->form->resize(800, 600);
        QTRY_COMPARE_WITH_TIMEOUT(window_->form->width(), 800, kDeadline);
        const auto* const cards = window_->Find<QWidget>("ReadAsVCards");
        QVERIFY(cards->width() < cards->sizeHint().width()); // so its caption takes a second line
        QVERIFY(cards->height() >= 2 * cards->fontMetrics().height());
        AddFile("1.vcf", "a");
        AddFile("2.vcf", "a");
        AfterResult("1.vcf", [&] {
            QVERIFY(window_->Find<QWidget>("Progress")->isVisible());
            QCOMPARE(window_->form->width(), 800);
            QVERIFY(window_->form->minimumSizeHint().width() <= 800);
        });
        QCOMPARE(Run(), kDone);
    }

private:
    void AddFile(const std::string& name, const std::string& bytes) {
        folder_->Write(name, bytes);
        window_->AddFiles({folder_->Path(name)});
    }

    /// The offers of the status line that can be chosen: "undo", "forget", and "keep" for the old
    /// texts of missing files.
    QString Offers() {
        QStringList menu;
        for (const auto& [name, offer] :
             {std::pair{"Forget", u"forget"_s}, {"KeepMissing", u"keep"_s}}) {
            const auto* const action = window_->Find<QAction>(name);
            menu += action->isEnabled() && action->isVisible() ? QStringList(offer) : QStringList();
        }
        if (window_->Find<QPushButton>("UndoMenu")->isEnabled() == menu.isEmpty()) {
            return u"the menu cannot be opened"_s;
        }
        const bool undo = window_->Find<QPushButton>("UndoLastRun")->isEnabled();
        return ((undo ? QStringList(u"undo"_s) : QStringList()) + menu).join(u' ');
    }
    QString UndoTip() { return window_->Find<QPushButton>("UndoLastRun")->toolTip(); }
    void Trigger(const char* action) {
        window_->Find<QAction>(action)->trigger();
        QCoreApplication::processEvents();
    }

    QString Run() {
        window_->Boxes();
        window_->Press("PushButton1");
        return window_->Boxes();
    }

    void AfterResult(const std::string& name, std::function<void()> action) {
        Once([this, name] { return folder_->Exists("out/" + name); }, std::move(action));
    }

    /// Starts the program again; closing its window has ended it.
    void Reopen() {
        window_ = std::make_unique<Window>();
        window_->Open();
    }

    std::unique_ptr<TestFolder> folder_;
    std::unique_ptr<Window> window_;
};

[[maybe_unused]] const bool kAdded = AddSuite<RunTest>("RunTest");

} // namespace vexmarrow::test

#include "RunTest.moc"

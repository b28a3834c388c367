// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/Boxes.h"
#include "app/QtPrompts.h"
#include "app/Strings.h"
#include "support/TestFolder.h"

#include <QAction>
#include <QGuiApplication>

namespace vexmarrow::test {
namespace {

const QString kDone = u"Done."_s;
const QString kRunAt = u"in Zentavor2021/08/31.Form1.PushButton1_Click at line "_s;
const QString kEngineAt = u"in Zentavor2021/08/31.ReplaceText.%1 at line %2"_s;

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

    void WhatIsLacking() {
        const QString noFind = u"You forgot to input find what."_s;
        const QString noFolder = u"Folder does not exist. Please select another folder."_s;
        const QString noFiles = u"No files added."_s;
        folder_->Write("file", "x");
        window_->SetText1(u"");
        QCOMPARE(Run(), noFind);
        window_->SelectTab(kSets);
        window_->AddSet(u"a::b");
        QCOMPARE(Run(), noFind);
        window_->SetText1(u"any");
        for (const char* const place : {"missing", "file"}) {
            window_->SetText3(folder_->Path(place));
            QCOMPARE(Run(), noFolder);
        }
        window_->SetText3(u"");
        QCOMPARE(Run(), noFolder);
        window_->Press("Option5"); // the folder does not matter any more
        QCOMPARE(Run(), noFiles);
        window_->SelectTab(kSinglePair);
        QCOMPARE(Run(), noFiles);
    }

    void EveryMode_data() {
        QTest::addColumn<QString>("option");
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("cards");
        QTest::addColumn<QByteArray>("result");
        const auto row = [](const char* name, const char* option, int tab, bool cards,
                            const char* result) {
            QTest::newRow(name) << option << tab << cards << QByteArray(result);
        };
        row("fields", "Option1", 0, false, "Nb;b=b:banana\r\nTELb:1a\r\n");
        row("values", "Option2", 0, false, "Na;a=a:bbnbnb\r\nTELa:1b\r\n");
        row("both", "Option3", 0, false, "Nb;b=b:bbnbnb\nTELb:1b:2b");
        row("sets", "Option1", 1, false, "Nc;c=c:ccncnc\nTELc:1c:2c");
        row("fields of cards", "Option1", 0, true, "Nb;b=b:banana\nTELb:1a:2a");
        row("values of cards", "Option2", 0, true, "Na;a=a:bbnbnb\nTELa:1b:2b");
        row("both of cards", "Option3", 0, true, "Nb;b=b:bbnbnb\nTELb:1b:2b");
        row("sets in cards", "Option1", 1, true, "Nc;c=c:ccncnc\nTELc:1c:2c");
    }
    void EveryMode() {
        QFETCH(const QString, option);
        QFETCH(const int, tab);
        QFETCH(const bool, cards);
        const std::string before = "Na;a=a:banana\nTELa:1a:2a";
        window_->AddSet(u"a::b");
        window_->AddSet(u"b::c");
        window_->SelectTab(static_cast<Tab>(tab));
        window_->Press(option.toLatin1().constData());
        window_->Find<QCheckBox>("ReadAsVCards")->setChecked(cards);
        AddFile("one.vcf", before);
        QCOMPARE(Run(), kDone);
        QTEST(QByteArray::fromStdString(folder_->Read("out/one.vcf")), "result");
        QCOMPARE(folder_->Read("one.vcf"), before);
        window_->Press("Option5");
        QCOMPARE(Run(), kDone);
        QTEST(QByteArray::fromStdString(folder_->Read("one.vcf")), "result");
    }

    void FilesThatAreNone() {
        AddFile("gone.vcf", "a");
        AddFile("empty.vcf", "");
        AddFile("whole.vcf", "a");
        folder_->Remove("gone.vcf");
        QCOMPARE(Run(), kDone); // skipped in silence
        QCOMPARE(folder_->Names("out"), std::vector<std::string>{"whole.vcf"});
        window_->SelectTab(kSets);
        QCOMPARE(Run(), kEngineAt.arg(u"ReplaceTextInFileCombo"_s).arg(1) + u'|' + kDone);
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
        QCOMPARE(Run(), kEngineAt.arg(whole).arg(6) + u'|' + kDone);
        QCOMPARE(folder_->Read("kept.vcf"), std::string("a"));
        window_->SelectTab(kSets);
        const QString combo = u"ReplaceTextInFileCombo"_s;
        QCOMPARE(Run(),
                 kEngineAt.arg(combo).arg(1) + u'|' + kEngineAt.arg(combo).arg(4) + u'|' + kDone);
    }

    void MoreFindLinesThanReplaceLines() {
        AddFile("one.vcf", "aAxX");
        window_->SetText1(u"a\nx\n"); // the last line is empty and lacks a partner, too
        const QString report = kEngineAt.arg(u"ReplaceTextInFile"_s).arg(4);
        QCOMPARE(Run(), report + u'|' + report + u'|' + kDone);
        QCOMPARE(folder_->Read("out/one.vcf"), std::string("bAxX"));
    }

    void HandsOnTheWindowDuringARun() {
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
        QCOMPARE(Run(), kDone); // the refusal has not outlasted the run
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
        auto* const pages = window_->Find<QComboBox>("CodePage");
        AfterResult("1.vcf", [&] { pages->setCurrentIndex(1); }); // Cyrillic
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

    void RowsRemovedDuringARun() {
        AddFile("1.vcf", "a");
        AddFile("2.odd", "a");
        QCOMPARE(window_->Rows(), 2);
        AfterResult("1.vcf", [&] {
            folder_->Remove("out/1.vcf");
            window_->prompts.answers = {Answer::Yes};
            window_->Press("PushButton13"); // cancelled, but the list is validated
        });
        window_->Boxes();
        QVERIFY(Run().endsWith(u"list?|"_s + kRunAt + u"6|"_s + kDone));
        // The row is gone, and the file before it was handed over again.
        QCOMPARE(folder_->Names("out"), std::vector<std::string>{"1.vcf"});
        QCOMPARE(window_->Rows(), 1);
    }

    void ClosedDuringARun() {
        for (const char* const name : {"1.vcf", "2.vcf", "3.vcf"}) {
            AddFile(name, "a");
        }
        AfterResult("2.vcf", [&] { window_->form->close(); });
        QCOMPARE(Run(), QString()); // no "Done."
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
        QCOMPARE(Offer(), u"-- There is no run to undo."_s);
        AddFile("1.vcf", "a");
        AddFile("2.vcf", "a");
        window_->Press("Option5");
        Once([&] { return folder_->Read("1.vcf") == "b"; },
             [&] {
                 QCOMPARE(Offer().left(2), u"--"_s);
                 window_->pickers.folders = {folder_->Path("out")}; // a scan inside the run
                 window_->Press("PushButton3");
                 QCOMPARE(Offer().left(2), u"--"_s);
                 Trigger("Forget"); // refused
             });
        QCOMPARE(Run(), kDone);
        QVERIFY2(Offer().startsWith(u"UF Undo the run of "_s) && Offer().endsWith(u": 2 files."_s),
                 qPrintable(Offer()));
        window_->prompts.answers = {Answer::Yes};
        Once([&] { return folder_->Read("2.vcf") == "a"; },
             [&] {
                 QCOMPARE(Offer().left(2), u"--"_s);
                 QVERIFY(QGuiApplication::overrideCursor() != nullptr);
                 QVERIFY(window_->Find<QLabel>("Progress")->text().endsWith(u"of 2"_s));
                 window_->Press("PushButton1"); // refused
             });
        window_->Press("UndoLastRun");
        const QString boxes = window_->Boxes();
        QVERIFY2(boxes.startsWith(u"Undo the run of "_s) && boxes.endsWith(u" is undone."_s) &&
                     boxes.count(u'|') == 1,
                 qPrintable(boxes));
        QCOMPARE(folder_->Read("1.vcf") + folder_->Read("2.vcf"), std::string("aa"));
        QCOMPARE(Offer(), u"-- There is no run to undo."_s);

        QCOMPARE(Run(), kDone);
        QCOMPARE(Offer().left(2), u"UF"_s);
        window_->prompts.answers = {Answer::Yes};
        Trigger("Forget");
        QVERIFY(window_->Boxes().startsWith(u"Forget the old texts"_s));
        QCOMPARE(Offer(), u"-- There is no run to undo."_s);
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
        QCOMPARE(window_->Boxes().count(u'|'), 0); // the question alone
        QCOMPARE(folder_->Read("1.vcf") + folder_->Read("2.vcf"), std::string("ba"));
        Reopen();
    }

    void FilesOfAnInterruptedRunThatAreNotThere() {
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
        QCOMPARE(notice->accessibleName(), u"1 file of an interrupted run is not there"_s);
        QVERIFY(Offer().startsWith(u"-FK The run of "_s));
        QCOMPARE(window_->Boxes(), QString());
        Trigger("KeepMissing");
        QVERIFY(window_->Boxes().contains(ToQString(folder_->Path("card.vcf"))));
        QVERIFY(!notice->isVisible());
        QCOMPARE(Offer(), u"-F There is no run to undo."_s); // the copy
    }

    void ANarrowWindowStaysNarrow() {
        QFont font = window_->form->font();
        font.setPointSizeF(18);
        window_->form->setFont(font);
        window_->form->resize(800, 600);
        QTRY_COMPARE_WITH_TIMEOUT(window_->form->width(), 800, kDeadline);
        const auto* const cards = window_->Find<QWidget>("ReadAsVCards");
        QVERIFY(cards->width() < cards->sizeHint().width()); // so it is higher
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

    void HundredThousandRows() {
        AddFile("1.vcf", "a");
        std::vector<std::u16string> choice{folder_->Path()};
        for (int i = 0; i < 100'000; ++i) {
            choice.emplace_back(i % 2 == 0 ? u"1.vcf" : u"none.odd");
        }
        window_->pickers.files.push_back(choice);
        window_->prompts.answers = {Answer::Yes};
        window_->Press("PushButton13");
        QCOMPARE(window_->Rows(), 50'001);
        QCOMPARE(window_->Find<QLabel>("Count")->text(), QLocale().toString(50'001) + u" files"_s);
        window_->Boxes();
        folder_->Remove("1.vcf");
        QCOMPARE(Run(), kDone);
    }

private:
    void AddFile(const std::string& name, const std::string& bytes) {
        folder_->Write(name, bytes);
        window_->AddFiles({folder_->Path(name)});
    }

    /// What the status line offers: U to undo, F to forget, K to keep old texts of missing files;
    /// and the tool tip.
    QString Offer() {
        const auto offers = [&](const char* name, char letter) {
            const auto* const action = window_->Find<QAction>(name);
            return action->isEnabled() && action->isVisible() ? QString(QLatin1Char(letter))
                                                              : QString();
        };
        const auto* const undo = window_->Find<QPushButton>("UndoLastRun");
        const QString menu = offers("Forget", 'F') + offers("KeepMissing", 'K');
        if (window_->Find<QPushButton>("UndoMenu")->isEnabled() == menu.isEmpty()) {
            return u"the menu cannot be opened"_s;
        }
        return (undo->isEnabled() ? u"U"_s : u"-"_s) + (menu.isEmpty() ? u"-"_s : menu) + u' ' +
               undo->toolTip();
    }
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

    /// A closed window is the end of the program: the next start.
    void Reopen() {
        window_ = std::make_unique<Window>();
        window_->Open();
    }

    std::unique_ptr<TestFolder> folder_;
    std::unique_ptr<Window> window_;
};

std::unique_ptr<QObject> MakeRunTest() {
    return std::make_unique<RunTest>();
}

} // namespace vexmarrow::test

#include "RunTest.moc"

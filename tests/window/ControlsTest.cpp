// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/Boxes.h"
#include "app/Colours.h"
#include "app/LinesEdit.h"
#include "app/Note.h"
#include "app/QtPickers.h"
#include "app/SetsTable.h"
#include "app/SetsView.h"
#include "app/Strings.h"
#include "support/TestFolder.h"

#include <QClipboard>
#include <QGuiApplication>

namespace vexmarrow::test {

class ControlsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void TypedText() {
        Window window;
        window.Open();
        auto* const box = window.Find<LinesEdit>("Text1");
        QTest::keyClicks(box, QStringLiteral("one"));
        QTest::keyClick(box, Qt::Key_Return);
        QTest::keyClicks(box, QStringLiteral("two"));
        QTest::keyClick(box, Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(ToQString(box->Text()), QStringLiteral("one\r\ntwo\r\n"));
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Tab);
        QCOMPARE(ToQString(box->Text()), QStringLiteral("one\r\ntwo\r\n"));
        QVERIFY(window.Find<LinesEdit>("Text2")->hasFocus());
    }

    void PastedText_data() {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, std::u16string_view pasted,
                            std::u16string_view text) {
            QTest::newRow(name) << ToQString(pasted) << ToQString(text);
        };
        row("line ends", u"a\r\nb\nc\rd", u"a\r\nb\r\nc\r\nd");
        row("end of the last line", u"a\n", u"a\r\n");
        row("blanks and tabs", u" \t a\u00A0\u2009 ", u" \t a\u00A0\u2009 ");
        row("separators", u"a\u2028b\u2029c", u"a\u2028b\u2029c");
        row("noncharacters", u"\uFDD0\uFDD1\uFDD2\uFDD3\uFDD6\uFFFF",
            u"\uFDD0\uFDD1\uFDD2\uFDD3\uFDD6\uFFFF");
        row("surrogates", u"\U0001F600\xD83D x \xDE00", u"\U0001F600\xD83D x \xDE00");
        row("controls", std::u16string_view(u"a\0b\x1F\x7F", 5),
            std::u16string_view(u"a\0b\x1F\x7F", 5));
        const std::u16string large(300'000, u'x');
        row("of any length", large, large);
    }
    void PastedText() {
        QFETCH(const QString, pasted);
        Window window;
        window.Open();
        QGuiApplication::clipboard()->setText(pasted);
        auto* const box = window.Find<LinesEdit>("Text1");
        box->paste();
        QTEST(ToQString(box->Text()), "text");
    }

    void SetsAreChosenInStep() {
        Window window;
        window.Open();
        window.SelectTab(kSets);
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        auto* const find = window.Find<QComboBox>("Combo1");
        auto* const replace = window.Find<QComboBox>("Combo2");
        auto* const table = window.Find<SetsTable>("SetsTable");
        // The lists, each with its number of entries and what is chosen in it, and the table's row.
        const auto state = [&] {
            const QModelIndexList rows = table->selectionModel()->selectedRows();
            return QStringLiteral("%1 %2, %3 %4, %5")
                .arg(find->count())
                .arg(find->currentIndex())
                .arg(replace->count())
                .arg(replace->currentIndex())
                .arg(rows.isEmpty() ? -1 : rows.front().row());
        };
        const auto click = [&](int row, Qt::KeyboardModifiers modifiers = {}) {
            const QRect cell = table->visualRect(table->model()->index(row, 2));
            QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers, cell.center());
        };
        window.Press("PushButton6");
        window.AddSet(u"a::b");
        QCOMPARE(state(), QStringLiteral("1 -1, 1 -1, -1")); // nothing chooses itself
        window.AddSet(u"c::d::e");
        window.AddSet(u"c::");
        find->setCurrentIndex(1);
        QCOMPARE(state(), QStringLiteral("3 1, 3 1, 1"));
        QCOMPARE(find->currentText() + replace->currentText(), QStringLiteral("cd"));
        QTest::keyClick(replace, Qt::Key_Down);
        QCOMPARE(state(), QStringLiteral("3 2, 3 2, 2"));
        window.AddSet(u"::");
        QCOMPARE(state(), QStringLiteral("4 2, 4 2, 2"));
        window.Press("PushButton6");
        QCOMPARE(state(), QStringLiteral("3 -1, 3 -1, -1"));
        window.Press("PushButton6"); // nothing is selected any more
        QCOMPARE(state(), QStringLiteral("3 -1, 3 -1, -1"));
        replace->setCurrentIndex(0);
        window.Press("PushButton4");
        QCOMPARE(state(), QStringLiteral("0 -1, 0 -1, -1"));

        for (const char16_t* const set : {u"a::b", u"c::d", u"e::f"}) {
            window.AddSet(set);
        }
        replace->setFocus();
        QTest::keyClick(replace, Qt::Key_Tab); // into the table: the first row has the focus only
        QCOMPARE(QApplication::focusWidget(), table);
        window.Press("PushButton6");
        QCOMPARE(state(), QStringLiteral("3 -1, 3 -1, -1"));
        click(2);
        QCOMPARE(state(), QStringLiteral("3 2, 3 2, 2"));
        QTest::keyClick(table, Qt::Key_Up);
        QCOMPARE(state(), QStringLiteral("3 1, 3 1, 1"));
        click(1, Qt::ControlModifier); // lets it go
        QCOMPARE(state(), QStringLiteral("3 -1, 3 -1, -1"));
        click(1);
        window.Press("PushButton6");
        QCOMPARE(state(), QStringLiteral("2 -1, 2 -1, -1"));
        QCOMPARE(table->currentIndex().row(), 1); // from where the keys go on
        QTest::keyClick(table, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), window.Find<QWidget>("PushButton7"));
        QString behindBox;
        Once([&] { return IsBehindBox(*table); },
             [&] {
                 table->selectRow(0);
                 behindBox = state();
                 CloseBoxes();
             });
        window.Press("PushButton10");
        QCOMPARE(behindBox, QStringLiteral("2 -1, 2 -1, -1"));
        window.Press("PushButton4");

        window.AddSet(u"no separator");
        window.AddSet(u"");
        QCOMPARE(window.Boxes(),
                 QStringLiteral("You must use :: to separate the find text from the replace text"));
        QCOMPARE(find->count(), 0);
    }

    void SetsInSight() {
        SetList sets;
        QWidget window;
        QComboBox find, replace;
        auto* const table = new SetsTable(&window);
        table->resize(400, table->minimumSizeHint().height());
        const SetsView view(sets, &find, &replace, table, nullptr);
        window.show();
        const auto cells = [&](int row) {
            QStringList texts;
            for (int column = 0; column < 3; ++column) {
                texts << table->model()->index(row, column).data().toString();
            }
            return texts.join(u'|');
        };
        const auto counts = [&] {
            return QStringList{find.placeholderText(), find.accessibleDescription(),
                               replace.placeholderText(), replace.accessibleDescription()};
        };
        const auto all = [](const QString& count) { return QStringList(4, count); };
        const QString largest = QLocale().toString(10'000);
        QCOMPARE(counts(), all(QStringLiteral("No sets")));
        sets.Add(u"a", u"");
        QCOMPARE(counts(), all(QStringLiteral("1 set")));
        QCOMPARE(cells(0), QStringLiteral("1|a|(empty)"));
        QCOMPARE(table->model()->index(0, 2).data(Qt::ForegroundRole).value<QColor>(),
                 QuietColour(table->palette()));
        QVERIFY(!table->model()->index(0, 1).data(Qt::ForegroundRole).isValid());
        std::vector<SetList::Set> many(9'999, {u"<b>\n", u"c"});
        sets.Add(many);
        QCOMPARE(counts(), all(largest + QStringLiteral(" sets")));
        QCOMPARE(cells(9'999), largest + ToQString(u"|<b>\u240A|c"));
        const QString tip = table->model()->index(1, 1).data(Qt::ToolTipRole).toString();
        QVERIFY(tip.contains(ToQString(u"&lt;b&gt;\u240A")));
        // Two whole rows, the one that was added last among them.
        QCOMPARE(table->rowAt(0), 9'998);
        QCOMPARE(table->rowAt(table->viewport()->height() - 1), 9'999);
        QCOMPARE(table->columnWidth(1) + table->columnWidth(0) + table->columnWidth(2),
                 table->viewport()->width());
        QVERIFY(qAbs(table->columnWidth(1) - table->columnWidth(2)) < 2);
        QVERIFY(table->columnWidth(0) >= table->fontMetrics().horizontalAdvance(largest));

        // Halves of sets, as an error can leave them
        sets.ClearReplaceTexts();
        QCOMPARE(cells(3), ToQString(u"4|<b>\u240A|"));
        table->selectRow(3);
        QCOMPARE(std::pair(find.currentIndex(), replace.currentIndex()), std::pair(3, -1));
        QCOMPARE(counts()[1] + counts()[3], largest + QStringLiteral(" sets"));
        sets.ClearFindTexts();
        QCOMPARE(table->model()->rowCount(), 0);
    }

    void QuietLines() {
        const TestFolder folder;
        std::vector<std::u16string> paths;
        for (const char* const name : {"a/x.vcf", "b/x.vcf"}) {
            folder.Write(name, "FN:M\xC3\xBCller\r\n");
            paths.push_back(folder.Path(name));
        }
        Window window;
        window.Open();
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        const auto shown = [&] {
            QApplication::processEvents();
            QStringList names;
            for (const auto* const note : window.form->findChildren<Note*>()) {
                names += note->isVisible() ? QStringList(note->objectName()) : QStringList();
            }
            return names.join(u' ') + u'|' + window.Find<LinesEdit>("Text2")->placeholderText() +
                   u'|' + window.Find<QLabel>("Count")->text();
        };
        using Step = std::pair<std::function<void()>, const char*>;
        for (const auto& [change, expected] :
             {Step{[] {}, "|one text a line|No files"},
              Step{[&] { window.Press("Option1"); }, "OptionsNote|one text|No files"},
              Step{[&] { window.Press("ReadAsVCards"); }, "|one text a line|No files"},
              Step{[&] { window.SetText1(u"a,\nb"), window.SetText2(u"c"); },
                   "TextsNote|one text a line|No files"},
              Step{[&] { window.Press("Option2"); }, "TextsNote|one text a line|No files"},
              Step{[&] { window.Press("ReadAsVCards"); }, "OptionsNote|one text|No files"},
              Step{[&] { window.SetText1(u""), window.Press("Option3"); },
                   "|one text a line|No files"},
              Step{[&] { window.AddFiles(paths); }, "ResultsNote|one text a line|2 files"},
              Step{[&] { window.SetText3(u""); }, "|one text a line|2 files"},
              Step{[&] { window.Press("Option5"); }, "|one text a line|2 files"},
              Step{[&] { window.AddFiles({paths[0]}); }, "ResultsNote|one text a line|3 files"},
              Step{[&] { window.SetText1(u"a\nb"), window.SetText2(u"c"); },
                   "TextsNote ResultsNote|one text a line|3 files"},
              Step{[&] { window.SelectTab(kSets); },
                   "OptionsNote ResultsNote|one text a line|3 files"},
              Step{[&] { window.SetText1(u""), window.AddSet(u"a::b"); },
                   "SetsNote OptionsNote ResultsNote|one text a line|3 files, 1 set"},
              Step{[&] { window.AddSet(u"\u00FC::u"); },
                   "SetsNote OptionsNote ResultsNote|one text a line|These files look like UTF-8"},
              Step{[&] { window.SelectTab(kSinglePair); },
                   "ResultsNote|one text a line|3 files, 2 sets"},
              Step{[&] { window.SetText2(u"\u00FC"); },
                   "ResultsNote|one text a line|These files look like UTF-8"},
              Step{[&] { window.Press("ReadAsVCards"); },
                   "ResultsNote|one text a line|3 files, 2 sets"},
              Step{[&] { window.Press("ReadAsVCards"); },
                   "ResultsNote|one text a line|These files look like UTF-8"},
              Step{[&] { window.Find<QComboBox>("CodePage")->setCurrentIndex(10); },
                   "ResultsNote|one text a line|3 files, 2 sets"},
              Step{[&] { window.Find<QComboBox>("CodePage")->setCurrentIndex(0); },
                   "ResultsNote|one text a line|These files look like UTF-8"},
              Step{[&] { window.Press("UseUtf8"); },
                   "ResultsNote|one text a line|3 files, 2 sets"}}) {
            change();
            QCOMPARE(shown(), QString::fromLatin1(expected));
        }
        QVERIFY(window.Find<QComboBox>("CodePage")->hasFocus());
        QCOMPARE(ToQString(window.settings.values[u"AnsiCodePage"]), QStringLiteral("UTF-8"));
        QVERIFY(!window.flags.IsUtf8 && !window.flags.IsUnicode);
        QCOMPARE(window.Find<QWidget>("Frame2")->accessibleDescription(),
                 window.Find<QLabel>("ResultsNote")->text());
    }

    void ListShowsAnyName() {
        Window window;
        window.Open();
        window.AddFiles({u"/a/two\nlines.vcf", u"/a/\xDCFF.vcf", u"/a/\u00E4\U0001F600.vcf"});
        auto* const view = window.Find<QTreeView>("ListView1");
        QStringList shown;
        for (int row = 0; row < window.Rows(); ++row) {
            shown << view->model()->index(row, 0).data().toString();
        }
        QCOMPARE(shown,
                 (QStringList{ToQString(u"/a/two\u240Alines.vcf"), ToQString(u"/a/\uFFFD.vcf"),
                              ToQString(u"/a/\u00E4\U0001F600.vcf")}));
        QCOMPARE(view->columnWidth(0), qRound(7000 / 1440.0 * view->logicalDpiX()));
    }

    void EveryControlHasANameAndAPlace() {
        Window window;
        window.Open();
        const std::vector<std::pair<const char*, const char*>> order{
            {"ListView1", "File(s)"},
            {"PushButton13", "Add VCF File(s)"},
            {"PushButton3", "Add All VCF File(s) In Folder"},
            {"PushButton9", "Load List Of Files From File"},
            {"PushButton17", "Remove Filenames Contain. X"},
            {"PushButton11", "Remove Filenames Not Cont. X"},
            {"PushButton2", "Clear List"},
            {"PushButton8", "Load Sample/Example Files"},
            {"PushButton5", "Help"},
            {"Text1", "Find what (exact case):"},
            {"Text2", "Replace with:"},
            {"Combo1", "Find what (exact case):"},
            {"Combo2", "Replace with:"},
            {"SetsTable", "Sets"},
            {"PushButton7", "Add Set"},
            {"PushButton6", "Remove Selected Set"},
            {"PushButton10", "Load Sets"},
            {"PushButton4", "Clear"},
            {"PushButton12", "Save Sets"},
            {"Option1", "Find and replace in fields only"},
            {"Option2", "Find and replace in values only"},
            {"Option3", "Find and replace in fields and values"},
            {"ReadAsVCards",
             "Read as vCards (finds text in wrapped or coded lines, leaves photos alone)"},
            {"Option5", "Save results in folder of original file"},
            {"Option4", "Save results to this folder:"},
            {"Text3", "Save results to this folder:"},
            {"PushButton14", "Browse for output folder"},
            {"PushButton1", "Start Replacing"},
            {"UndoLastRun", "Undo Last Run"},
            {"UndoMenu", "Undo Menu"},
            {"CodePage", "Code page of unmarked files:"}};
        QStringList expected;
        for (const auto& [name, accessibleName] : order) {
            const auto* const control = window.Find<QWidget>(name);
            QCOMPARE(control->accessibleName(), QString::fromLatin1(accessibleName));
            expected << QString::fromLatin1(name);
        }
        const QWidget* const first = window.Find<QWidget>("ListView1");
        QStringList chain{first->objectName()};
        for (const QWidget* w = first->nextInFocusChain(); w != first; w = w->nextInFocusChain()) {
            if (expected.contains(w->objectName())) {
                chain << w->objectName();
            }
        }
        QCOMPARE(chain, expected);
        QFont font = window.form->font();
        for (const double points : {9.0, 13.5, 18.0}) {
            font.setPointSizeF(points);
            window.form->setFont(font);
            for (const Tab tab : {kSinglePair, kSets}) {
                window.SelectTab(tab);
                QCOMPARE(KeyboardFaults(*window.form), QString());
            }
        }
        for (const char* const frame : {"Frame1", "Frame2", "Frame4", "TabControl1"}) {
            QVERIFY2(!window.Find<QWidget>(frame)->accessibleName().isEmpty(), frame);
        }
    }

    void FilesChosenInSeveralFolders() {
        const auto parts = [](const QStringList& files) {
            QStringList joined;
            for (const std::u16string& part : PartsOfChoice(files)) {
                joined << ToQString(part);
            }
            return joined.join(u'|');
        };
        const auto list = [](const char* files) {
            return QString::fromLatin1(files).split(u'|', Qt::SkipEmptyParts);
        };
        QCOMPARE(parts(list("")), QString());
        QCOMPARE(parts(list("/a/b.vcf")), QStringLiteral("/a/b.vcf"));
        QCOMPARE(parts(list("/a/b|/a/c")), QStringLiteral("/a|b|c"));
        QCOMPARE(parts(list("/b|/c")), QStringLiteral("/|b|c"));
        QCOMPARE(parts(list("/a/b/c|/a/d|/a/b/e")), QStringLiteral("/a|b/c|d|b/e"));
        QCOMPARE(parts(list("/ab/c|/a/d")), QStringLiteral("/|ab/c|a/d"));
        QCOMPARE(parts(list("/a/b|smb://host/c|relative")), QStringLiteral("/a/b"));
        QCOMPARE(NameFilters(u"VCF Files (*.vcf)|*.vcf|All Files (*.*)|*.*|"),
                 (QStringList{QStringLiteral("VCF Files (*.vcf) (*.vcf)"),
                              QStringLiteral("All Files (*.*) (*)")}));
    }
};

std::unique_ptr<QObject> MakeControlsTest() {
    return std::make_unique<ControlsTest>();
}

} // namespace vexmarrow::test

#include "ControlsTest.moc"

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/Colours.h"
#include "app/Note.h"
#include "app/QtPickers.h"
#include "app/SetsTable.h"
#include "app/SetsView.h"
#include "app/WaitingBoxes.h"

#include <QClipboard>
#include <QGuiApplication>

namespace vexmarrow::test {
namespace {

struct PasteCase {
    const char* name;
    std::u16string pasted;
    std::optional<std::u16string> text = {}; // in the box afterwards, if it is another one
};
const std::vector<PasteCase> kPasteCases{
    {"line ends", u"a\r\nb\nc\rd", u"a\r\nb\r\nc\r\nd"},
    {"end of the last line", u"a\n", u"a\r\n"},
    {"blanks and tabs", u" \t a\u00A0\u2009 "},
    {"separators", u"a\u2028b\u2029c"},
    {"noncharacters", u"\uFDD0\uFDD1\uFDD2\uFDD3\uFDD6\uFFFF"},
    {"surrogates", u"\U0001F600\xD83D x \xDE00"},
    {"controls", {u'a', u'\0', u'b', u'\x1F', u'\x7F'}},
    {"of any length", std::u16string(300'000, u'x')},
};

/// The state of the two lists of sets and the table: how many sets they show and which one is
/// chosen, from 0 on, -1 if none.
QString InStep(int sets, int chosen) {
    return u"%1 and %1 sets, chosen %2, %2 and %2"_s.arg(sets).arg(chosen);
}

} // namespace

class ControlsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void TypedText() {
        Window window;
        window.Open();
        auto* const box = window.Find<LinesEdit>("Text1");
        QTest::keyClicks(box, u"one"_s);
        QTest::keyClick(box, Qt::Key_Return);
        QTest::keyClicks(box, u"two"_s);
        QTest::keyClick(box, Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(ToQString(box->Text()), u"one\r\ntwo\r\n"_s);
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Tab);
        QCOMPARE(ToQString(box->Text()), u"one\r\ntwo\r\n"_s);
        QVERIFY(window.Find<LinesEdit>("Text2")->hasFocus());
    }

    void PastedText_data() { AddRows(kPasteCases); }
    void PastedText() {
        const PasteCase& paste = CurrentRow(kPasteCases);
        Window window;
        window.Open();
        QGuiApplication::clipboard()->setText(ToQString(paste.pasted));
        auto* const box = window.Find<LinesEdit>("Text1");
        box->paste();
        QCOMPARE(ToQString(box->Text()), ToQString(paste.text.value_or(paste.pasted)));
    }

    void SetsAreChosenInStep() {
        Window window;
        window.Open();
        window.SelectTab(kSets);
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        auto* const find = window.Find<QComboBox>("Combo1");
        auto* const replace = window.Find<QComboBox>("Combo2");
        auto* const table = window.Find<SetsTable>("SetsTable");
        const auto state = [&] {
            const QModelIndexList rows = table->selectionModel()->selectedRows();
            return u"%1 and %2 sets, chosen %3, %4 and %5"_s.arg(find->count())
                .arg(replace->count())
                .arg(find->currentIndex())
                .arg(replace->currentIndex())
                .arg(rows.isEmpty() ? -1 : rows.front().row());
        };
        const auto click = [&](int row, Qt::KeyboardModifiers modifiers = {}) {
            const QRect cell = table->visualRect(table->model()->index(row, 2));
            QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers, cell.center());
        };
        window.Press("PushButton6");
        window.AddSet(u"a::b");
        QCOMPARE(state(), InStep(1, -1)); // a new set is not chosen
        window.AddSet(u"c::d::e");
        window.AddSet(u"c::");
        find->setCurrentIndex(1);
        QCOMPARE(state(), InStep(3, 1));
        QCOMPARE(find->currentText() + replace->currentText(), u"cd"_s);
        QTest::keyClick(replace, Qt::Key_Down);
        QCOMPARE(state(), InStep(3, 2));
        window.AddSet(u"::");
        QCOMPARE(state(), InStep(4, 2));
        window.Press("PushButton6");
        QCOMPARE(state(), InStep(3, -1));
        window.Press("PushButton6"); // no set is chosen, so none goes
        QCOMPARE(state(), InStep(3, -1));
        replace->setCurrentIndex(0);
        window.Press("PushButton4");
        QCOMPARE(state(), InStep(0, -1));

        for (const char16_t* const set : {u"a::b", u"c::d", u"e::f"}) {
            window.AddSet(set);
        }
        replace->setFocus();
        QTest::keyClick(replace,
                        Qt::Key_Tab); // into the table, whose first row is not chosen by that
        QCOMPARE(QApplication::focusWidget(), table);
        window.Press("PushButton6");
        QCOMPARE(state(), InStep(3, -1));
        click(2);
        QCOMPARE(state(), InStep(3, 2));
        QTest::keyClick(table, Qt::Key_Up);
        QCOMPARE(state(), InStep(3, 1));
        click(1, Qt::ControlModifier); // the row is chosen no more
        QCOMPARE(state(), InStep(3, -1));
        click(1);
        window.Press("PushButton6");
        QCOMPARE(state(), InStep(2, -1));
        QCOMPARE(table->currentIndex().row(), 1); // where the arrow keys go on
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
        QCOMPARE(behindBox, InStep(2, -1));
        window.Press("PushButton4");

        window.AddSet(u"no separator");
        window.AddSet(u"");
        QCOMPARE(window.Boxes(),
                 u"You must use :: to separate the find text from the replace text"_s);
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
        constexpr int kMany = 10'000;
        const QString largest = QLocale().toString(kMany);
        QCOMPARE(counts(), all(u"No sets"_s));
        sets.Add(u"a", u"");
        QCOMPARE(counts(), all(u"1 set"_s));
        QCOMPARE(cells(0), u"1|a|(empty)"_s);
        QCOMPARE(table->model()->index(0, 2).data(Qt::ForegroundRole).value<QColor>(),
                 QuietColour(table->palette()));
        QVERIFY(!table->model()->index(0, 1).data(Qt::ForegroundRole).isValid());
        std::vector<SetList::Set> many(kMany - 1, {u"<b>\n", u"c"}); // beside the first
        sets.Add(many);
        QCOMPARE(counts(), all(largest + u" sets"_s));
        QCOMPARE(cells(kMany - 1), largest + u"|<b>\u240A|c"_s);
        const QString tip = table->model()->index(1, 1).data(Qt::ToolTipRole).toString();
        QVERIFY(tip.contains(u"&lt;b&gt;\u240A"_s));
        // Two whole rows are in sight; the last one is that of the set that was added last.
        QCOMPARE(table->rowAt(0), kMany - 2);
        QCOMPARE(table->rowAt(table->viewport()->height() - 1), kMany - 1);
        QCOMPARE(table->columnWidth(1) + table->columnWidth(0) + table->columnWidth(2),
                 table->viewport()->width());
        QVERIFY(qAbs(table->columnWidth(1) - table->columnWidth(2)) < 2);
        QVERIFY(table->columnWidth(0) >= table->fontMetrics().horizontalAdvance(largest));

        // An error can leave the find texts without replace texts.
        sets.ClearReplaceTexts();
        QCOMPARE(cells(3), u"4|<b>\u240A|"_s);
        table->selectRow(3);
        QCOMPARE(std::pair(find.currentIndex(), replace.currentIndex()), std::pair(3, -1));
        QCOMPARE(counts()[1] + counts()[3], largest + u" sets"_s);
        sets.ClearFindTexts();
        QCOMPARE(table->model()->rowCount(), 0);
    }

    void NotesAndHints() {
        const TestFolder folder;
        std::vector<std::u16string> paths;
        for (const char* const name : {"a/x.vcf", "b/x.vcf"}) {
            folder.Write(name, "FN:M\xC3\xBCller\r\n");
            paths.push_back(folder.Path(name));
        }
        Window window;
        window.Open();
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        const auto notes = [&] {
            QApplication::processEvents();
            QStringList names;
            for (const auto* const note : window.form->findChildren<Note*>()) {
                names += note->isVisible() ? QStringList(note->objectName()) : QStringList();
            }
            return names.join(u' ');
        };
        const auto choose = [&](const QString& page) {
            QComboBox* const pages = window.CodePages();
            pages->setCurrentIndex(pages->findData(page));
        };
        const auto latin = [](const char* text) { return QString::fromLatin1(text); };
        const char* const utf8 = "These files look like UTF-8";
        const char* const all = "3 files, 2 sets";
        struct Step {
            const char* name;
            std::function<void()> change;
            const char* notes = "";
            const char* count = "No files";
            const char* hint = "one text a line"; // in the box of the replace texts
        };
        for (const Step& step : std::vector<Step>{
                 {"start", [] {}},
                 {"fields", [&] { window.Press("Option1"); }, "OptionsNote", "No files",
                  "one text"},
                 {"fields of cards", [&] { window.Press("ReadAsVCards"); }},
                 {"find texts", [&] { window.SetText1(u"a,\nb"), window.SetText2(u"c"); },
                  "TextsNote"},
                 {"values of cards", [&] { window.Press("Option2"); }, "TextsNote"},
                 {"values", [&] { window.Press("ReadAsVCards"); }, "OptionsNote", "No files",
                  "one text"},
                 {"no find text", [&] { window.SetText1(u""), window.Press("Option3"); }},
                 {"one name twice", [&] { window.AddFiles(paths); }, "ResultsNote", "2 files"},
                 {"no folder", [&] { window.SetText3(u""); }, "", "2 files"},
                 {"in place", [&] { window.Press("Option5"); }, "", "2 files"},
                 {"one file twice", [&] { window.AddFiles({paths[0]}); }, "ResultsNote", "3 files"},
                 {"more find texts", [&] { window.SetText1(u"a\nb"), window.SetText2(u"c"); },
                  "TextsNote ResultsNote", "3 files"},
                 {"sets", [&] { window.SelectTab(kSets); }, "OptionsNote ResultsNote", "3 files"},
                 {"one set", [&] { window.SetText1(u""), window.AddSet(u"a::b"); },
                  "SetsNote OptionsNote ResultsNote", "3 files, 1 set"},
                 {"set beyond ASCII", [&] { window.AddSet(u"\u00FC::u"); },
                  "SetsNote OptionsNote ResultsNote", utf8},
                 {"pair", [&] { window.SelectTab(kSinglePair); }, "ResultsNote", all},
                 {"pair beyond ASCII", [&] { window.SetText2(u"\u00FC"); }, "ResultsNote", utf8},
                 {"cards", [&] { window.Press("ReadAsVCards"); }, "ResultsNote", all},
                 {"no cards", [&] { window.Press("ReadAsVCards"); }, "ResultsNote", utf8},
                 {"UTF-8", [&] { choose(u"UTF-8"_s); }, "ResultsNote", all},
                 {"another page", [&] { choose(u"windows-1250"_s); }, "ResultsNote", utf8},
                 {"UTF-8 offered", [&] { window.Press("UseUtf8"); }, "ResultsNote", all}}) {
            step.change();
            QString shown = notes();
            shown += u'|' + window.Find<QLabel>("Count")->text() + u'|' +
                     window.Find<LinesEdit>("Text2")->placeholderText();
            const QString expected =
                u"%1|%2|%3"_s.arg(latin(step.notes), latin(step.count), latin(step.hint));
            QCOMPARE(latin(step.name) + u'|' + shown, latin(step.name) + u'|' + expected);
        }
        QVERIFY(window.CodePages()->hasFocus());
        QCOMPARE(ToQString(window.settings.values[u"AnsiCodePage"]), u"UTF-8"_s);
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
        QCOMPARE(shown, (QStringList{u"/a/two\u240Alines.vcf"_s, u"/a/\uFFFD.vcf"_s,
                                     u"/a/\u00E4\U0001F600.vcf"_s}));
        constexpr double kInches = 7000 / 1440.0; // 7000 twentieths of a point
        QCOMPARE(view->columnWidth(0), qRound(kInches * view->logicalDpiX()));
    }

    void EveryControlCanBeUsedByKeyboard() {
        Window window;
        window.Open();
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
        QCOMPARE(parts(list("/a/b.vcf")), u"/a/b.vcf"_s);
        QCOMPARE(parts(list("/a/b|/a/c")), u"/a|b|c"_s);
        QCOMPARE(parts(list("/b|/c")), u"/|b|c"_s);
        QCOMPARE(parts(list("/a/b/c|/a/d|/a/b/e")), u"/a|b/c|d|b/e"_s);
        QCOMPARE(parts(list("/ab/c|/a/d")), u"/|ab/c|a/d"_s);
        QCOMPARE(parts(list("/a/b|smb://host/c|relative")), u"/a/b"_s);
        QCOMPARE(NameFilters(u"VCF Files (*.vcf)|*.vcf|All Files (*.*)|*.*|"),
                 (QStringList{u"VCF Files (*.vcf) (*.vcf)"_s, u"All Files (*.*) (*)"_s}));
    }
};

[[maybe_unused]] const bool kAdded = AddSuite<ControlsTest>("ControlsTest");

} // namespace vexmarrow::test

#include "ControlsTest.moc"

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/Assembly.h"
#include "app/Folders.h"
#include "app/IniSettingsStore.h"
#include "app/WaitingBoxes.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QWheelEvent>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vexmarrow::test {
namespace {

QString ReportAt(int line) {
    return u"in Zentavor2021/08/31.Form1.Form_Load at line %1"_s.arg(line);
}

struct RestoredCase {
    const char* name;
    std::vector<TextPair> stored;           // keys and values
    std::vector<int> failing = {};          // statements whose failures are reported
    QString checked = u"Option3 Option4"_s; // options and boxes that are set
    Tab tab = kSinglePair;
    QString page = u"windows-1252"_s;
};
const std::vector<RestoredCase> kRestoredCases{
    {"words", {{u"Option1", u"True"}, {u"Option3", u"False"}}, {}, u"Option1 Option4"_s},
    {"letter case", {{u"Option1", u"TRUE"}, {u"Option3", u"false"}}, {}, u"Option1 Option4"_s},
    {"numbers",
     {{u"Option1", u"0.0"}, {u"Option2", u"-1"}, {u"Option3", u"0"}},
     {},
     u"Option2 Option4"_s},
    {"no option set", {{u"Option3", u"False"}}, {}, u"Option4"_s},
    {"beside the originals",
     {{u"Option4", u"False"}, {u"Option5", u"True"}},
     {},
     u"Option3 Option5"_s},
    {"two options set", {{u"Option2", u"True"}, {u"Option3", u"True"}}},
    {"a word that is no option",
     {{u"Option1", u"maybe"}, {u"Option2", u"True"}, {u"Option3", u"0"}},
     {7},
     u"Option2 Option4"_s},
    {"empty option", {{u"Option3", u""}}, {9}, u"Option4"_s},
    {"bad output options", {{u"Option4", u"yes"}, {u"Option5", u""}}, {10, 11}, u"Option3"_s},
    {"tab", {{u"TabSel", u"1"}}, {}, u"Option3 Option4"_s, kSets},
    {"tab as a word", {{u"TabSel", u"second"}}, {13}},
    {"tab too high", {{u"TabSel", u"2"}}, {13}},
    {"tab too low", {{u"TabSel", u"-1"}}, {13}},
    {"page",
     {{u"AnsiCodePage", u"windows-1251"}},
     {},
     u"Option3 Option4"_s,
     kSinglePair,
     u"windows-1251"_s},
    {"no such page", {{u"AnsiCodePage", u"windows-9999"}}, {5}},
    {"page of several bytes a character", {{u"AnsiCodePage", u"Shift_JIS"}}, {5}},
    {"cards", {{u"ReadAsVCards", u"True"}}, {}, u"Option3 Option4 ReadAsVCards"_s},
    {"cards as a number", {{u"ReadAsVCards", u"0"}}},
    {"an empty text for cards", {{u"ReadAsVCards", u""}, {u"Option4", u"1"}}, {15}},
};

/// Something else that the settings file's name leads to.
struct NoSettingsCase {
    const char* name;
    const char* target; // of a link of that name
    QString reason;
};
const std::vector<NoSettingsCase> kNoSettingsCases{
    {"pipe", "pipe", u"It is not a regular file."_s},
    {"device", "/dev/null", u"It is not a regular file."_s},
    {"folder", ".", u"It is a folder."_s},
};

} // namespace

class StartupTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void FreshStore() {
        Window window;
        window.Open();
        QCOMPARE(window.Boxes(), QString());
        QCOMPARE(window.form->windowTitle(), u"Vexmarrow Software"_s);
        QCOMPARE(Checked(window), u"Option3 Option4"_s);
        QVERIFY(window.Find<QWidget>("Frame4")->isEnabled());
        QCOMPARE(window.Find<QTabWidget>("TabControl1")->currentIndex(), 0);
        QCOMPARE(window.Find<QLineEdit>("Text3")->text(), u"/home/somebody/Desktop/"_s);
        // Only what differs from the state of a new window is saved.
        QCOMPARE(Writes(window), u"Snapshot= Output Folder=/home/somebody/Desktop/"_s);
    }

    void Restored_data() { AddRows(kRestoredCases); }
    void Restored() {
        const RestoredCase& row = CurrentRow(kRestoredCases);
        Window window;
        for (const auto& [key, value] : row.stored) {
            window.settings.values[key] = value;
        }
        window.Open();
        QCOMPARE(Checked(window), row.checked);
        QCOMPARE(window.Find<QTabWidget>("TabControl1")->currentIndex(), int{row.tab});
        QStringList reports;
        for (const int line : row.failing) {
            reports << ReportAt(line);
        }
        QCOMPARE(window.Boxes(), reports.join(u'|'));
        QCOMPARE(window.Find<QWidget>("Frame4")->isEnabled(),
                 window.Find<QRadioButton>("Option4")->isChecked());
        QCOMPARE(ToQString(window.ansi.Page().Name()), row.page);
    }

    void ChangesAreSavedAtOnce() {
        Window window;
        window.Open();
        const QString third = u"Option1=False Option2=False Option3=True"_s;
        window.settings.writes.clear();
        window.Press("Option3"); // which was set before
        QCOMPARE(Writes(window), third);
        window.Press("Option1");
        QCOMPARE(Writes(window), u"Option1=True Option2=False Option3=False"_s);
        window.Find<QRadioButton>("Option3")->setChecked(true); // as the accessibility bus does
        QCOMPARE(Writes(window), third);
        window.Press("Option3");
        QCOMPARE(Writes(window), third);
        window.Press("Option5");
        QCOMPARE(Writes(window), u"Option4=False Option5=True"_s);
        QVERIFY(!window.Find<QWidget>("Text3")->isEnabled());
        window.Press("Option4");
        QCOMPARE(Writes(window), u"Option4=True Option5=False"_s);
        QVERIFY(window.Find<QWidget>("PushButton14")->isEnabled());
        window.SelectTab(kSets);
        QCOMPARE(Writes(window), u"TabSel=1"_s);
        window.Press("ReadAsVCards");
        QCOMPARE(Writes(window), u"ReadAsVCards=True"_s);
        window.Find<QCheckBox>("ReadAsVCards")->setChecked(false); // as the accessibility bus does
        QCOMPARE(Writes(window), u"ReadAsVCards=False"_s);
        window.Find<QLineEdit>("Text3")->clear();
        QTest::keyClicks(window.Find<QLineEdit>("Text3"), u"/a"_s);
        QCOMPARE(Writes(window), u"Output Folder= Output Folder=/ Output Folder=/a"_s);
    }

    void CodePages() {
        Window window;
        window.settings.values[u"AnsiCodePage"] = u"hp-roman8";
        window.Open();
        window.settings.writes.clear();
        QComboBox* const pages = window.CodePages();
        const auto row = [&](const QString& page) {
            return pages->model()->index(pages->findData(page), 0);
        };
        const auto below = [&](const QString& page) {
            return row(page).siblingAtRow(row(page).row() + 1).data(Qt::UserRole).toString();
        };
        const auto choose = [&](const QString& page) { pages->setCurrentIndex(row(page).row()); };
        const auto wheel = [&] {
            QWheelEvent event({9, 9}, {9, 9}, {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
            QApplication::sendEvent(pages, &event);
        };
        // The page in use, and what was saved.
        const auto used = [&] {
            QApplication::processEvents();
            const QString page = ToQString(window.ansi.Page().Name());
            return pages->currentData() == page ? page + Writes(window) : u"another is shown"_s;
        };
        const auto saved = [](const QString& page) { return page + u"AnsiCodePage="_s + page; };
        const QString first = u"windows-1250"_s, second = u"windows-1257"_s;
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        pages->addItem(u"refused"_s, u"refused"_s);
        wheel(); // without the focus
        QCOMPARE(used(), u"hp-roman8"_s);
        choose(first);
        QCOMPARE(used(), saved(first));
        choose(first);
        QCOMPARE(used(), first);
        QTest::keyClick(pages, Qt::Key_Down);
        QCOMPARE(used(), saved(below(first)));
        // As the accessibility bus does, and as the mouse does on its way.
        pages->view()->selectionModel()->select(row(second), QItemSelectionModel::Select);
        QCOMPARE(used(), saved(second));
        pages->view()->setCurrentIndex(row(first));
        QCOMPARE(used(), second);
        choose(u"refused"_s);
        QCOMPARE(used(), second);
        pages->setFocus();
        wheel();
        QCOMPARE(used(), saved(below(second)));
        QCOMPARE(window.Boxes(), u"in Zentavor2021/08/31.Form1.Combo3_Click at line 1"_s);
    }

    void ChoosingThePageInUseReplacesARefusedSetting() {
        Window window;
        window.settings.values[u"AnsiCodePage"] = u"nonsense";
        window.Open();
        QCOMPARE(window.Boxes(), ReportAt(5));
        window.settings.writes.clear();
        QComboBox* const pages = window.CodePages();
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        for (const QString& written : {u"AnsiCodePage=windows-1252"_s, QString()}) {
            pages->showPopup();
            QTest::keyClick(pages->view(), Qt::Key_Return);
            QCOMPARE(Writes(window), written);
        }
    }

    void BrowseForOutputFolder() {
        Window window;
        window.settings.values[u"LastFolderDot"] = u"/before";
        window.Open();
        window.settings.writes.clear();
        window.Press("PushButton14"); // cancelled
        QCOMPARE(Writes(window), QString());
        window.pickers.folders = {u"/new/place", u"/"};
        window.Press("PushButton14");
        QCOMPARE(Writes(window), u"LastFolderDot=/new/place Output Folder=/new/place/"_s);
        window.Press("PushButton14");
        QCOMPARE(window.Find<QLineEdit>("Text3")->text(), u"/"_s);
        const std::vector<TextPair> asked{{u"Please select folder:", u"/before"},
                                          {u"Please select folder:", u"/before"},
                                          {u"Please select folder:", u"/new/place"}};
        QVERIFY(window.pickers.asked == asked);
    }

    void EndedBeforeTheWindowShows() {
        const TestFolder folder;
        const auto place = WithVariable("XDG_CONFIG_HOME", folder.Native());
        folder.Write("Quillmoor.ini", "[Vexmarrow%20Software]\nOption1=nonsense\n");
        Assembly program;
        Once([] { return TopBox() != nullptr; }, [&] { program.MainWindow().close(); });
        QVERIFY(!program.Start());
    }

    void StoreKeepsEveryText() {
        const TestFolder folder;
        const auto place = WithVariable("XDG_CONFIG_HOME", folder.Native());
        SystemCalls calls;
        IniSettingsStore store(calls);
        const IniSettingsStore another(calls); // a second copy of the program
        const std::vector<std::u16string> texts{u"",
                                                u"True",
                                                u" blanks around ",
                                                u"a,b, c",
                                                u"\"quoted\"; 100%\\",
                                                u"@Invalid()",
                                                u"line\r\nline\ttab",
                                                u"\u00E4\u65E5\U0001F600",
                                                u"/bad \xDC80\xDCFF bytes/",
                                                u"utf16:0041",
                                                u"\xD83D",
                                                std::u16string(1, u'\0') + u"nul",
                                                u"x"};
        for (const std::u16string& text : texts) {
            store.SaveSetting(u"Output Folder", text);
            QCOMPARE(ToQString(another.GetSetting(u"Output Folder", u"none")), ToQString(text));
        }
        QCOMPARE(ToQString(another.GetSetting(u"LastFolder", u"none")), u"none"_s);
        const std::string file = folder.Read("Quillmoor.ini");
        QCOMPARE(QString::fromStdString(file), u"[Vexmarrow%20Software]\nOutput%20Folder=x\n"_s);
        folder.Write("Quillmoor.ini", "[Vexmarrow%20Software]\nLastFolder=/a, b\n");
        QCOMPARE(ToQString(store.GetSetting(u"LastFolder", u"")), u"/a, b"_s);
    }

    void NoSettingsFile_data() { AddRows(kNoSettingsCases); }
    void NoSettingsFile() {
        const NoSettingsCase& row = CurrentRow(kNoSettingsCases);
        const TestFolder folder;
        const auto place = WithVariable("XDG_CONFIG_HOME", folder.Native());
        const auto state = WithVariable("XDG_STATE_HOME", folder.Native("state"));
        SystemCalls calls;
        IniSettingsStore store(calls);
        store.SaveSetting(u"TabSel", u"1");
        folder.Remove("Quillmoor.ini");
        QCOMPARE(::mkfifo(folder.Native("pipe").c_str(), S_IRUSR | S_IWUSR), 0);
        folder.MakeLink("Quillmoor.ini", row.target);
        store.SaveSetting(u"TabSel", u"2");
        QCOMPARE(ToQString(store.GetSetting(u"TabSel", u"none")), u"none"_s);
        Assembly program;
        QStringList reports;
        Once([] { return TopBox() != nullptr; },
             [&] {
                 reports << TopBox()->findChildren<QLabel*>().constLast()->text();
                 TopBox()->close();
             });
        QVERIFY(program.Start());
        const QString report = reports.join(u'|');
        QVERIFY2(report.startsWith(u"Could not use the settings file \"%1\": %2\n"_s.arg(
                     ToQString(folder.Path("Quillmoor.ini")), row.reason)),
                 qPrintable(report));
        folder.Remove("Quillmoor.ini");
        store.SaveSetting(u"TabSel", u"1");
        QVERIFY(folder.Read("Quillmoor.ini").ends_with("TabSel=1\n"));
    }

    void HomeFolder() {
        const TestFolder folder;
        const auto place = WithVariable("XDG_CONFIG_HOME", folder.Native());
        const auto desktop = [](const char* home) {
            const auto variable = WithVariable("HOME", home);
            SettleHomeFolder();
            return ToQString(DesktopFolder());
        };
        const passwd* const user = ::getpwuid(::geteuid());
        const std::string home = user != nullptr ? user->pw_dir : "";
        const QString ofDatabase = QString::fromStdString(home == "/" ? "" : home);
        QCOMPARE(desktop(""), ofDatabase + u"/Desktop/"_s);
        QCOMPARE(desktop("relative"), ofDatabase + u"/Desktop/"_s);
        QCOMPARE(desktop("/home/of"), u"/home/of/Desktop/"_s);
        QCOMPARE(desktop("/"), u"/Desktop/"_s);
        folder.Write("user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/\"\n");
        QCOMPARE(desktop("/home/of"), u"/home/of/"_s);
        QCOMPARE(desktop("/"), u"/"_s);
    }

private:
    static QString Checked(const Window& window) {
        QStringList names;
        for (const auto* const option : window.form->findChildren<QAbstractButton*>()) {
            if (option->isChecked()) {
                names << option->objectName();
            }
        }
        names.sort();
        return names.join(u' ');
    }

    static QString Writes(Window& window) {
        QStringList writes;
        for (const auto& [key, value] : std::exchange(window.settings.writes, {})) {
            writes << ToQString(key) + u'=' + ToQString(value);
        }
        return writes.join(u' ');
    }
};

[[maybe_unused]] const bool kAdded = AddSuite<StartupTest>("StartupTest");

} // namespace vexmarrow::test

#include "StartupTest.moc"

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/Assembly.h"
#include "app/Boxes.h"
#include "app/IniSettingsStore.h"
#include "app/Strings.h"
#include "support/TestFolder.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QWheelEvent>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vexmarrow::test {
namespace {

QString Where(int line) {
    return QStringLiteral("in Zentavor2021/08/31.Form1.Form_Load at line %1").arg(line);
}

} // namespace

class StartupTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void FreshStore() {
        Window window;
        window.Open();
        QCOMPARE(window.Boxes(), QString());
        QCOMPARE(window.form->windowTitle(), QStringLiteral("Vexmarrow Software"));
        QCOMPARE(Checked(window), QStringLiteral("Option3 Option4"));
        QVERIFY(window.Find<QWidget>("Frame4")->isEnabled());
        QCOMPARE(window.Find<QTabWidget>("TabControl1")->currentIndex(), 0);
        QCOMPARE(window.Find<QLineEdit>("Text3")->text(),
                 QStringLiteral("/home/somebody/Desktop/"));
        // The box's text has changed; options and tab have not.
        QCOMPARE(Writes(window), QStringLiteral("Snapshot= Output Folder=/home/somebody/Desktop/"));
    }

    void Restored_data() {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("checked");
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("reports");
        const auto row = [](const char* name, const char* stored, const char* checked, int tab,
                            const QString& reports = {}) {
            QTest::newRow(name) << QString::fromLatin1(stored) << QString::fromLatin1(checked)
                                << tab << reports;
        };
        row("words", "Option1=True;Option2=False;Option3=False;TabSel=1", "Option1 Option4", 1);
        row("letter case", "Option1=TRUE;Option3=false", "Option1 Option4", 0);
        row("numbers", "Option1=0.0;Option2=-1;Option3=0", "Option2 Option4", 0);
        row("none of the modes", "Option1=False;Option2=False;Option3=False", "Option4", 0);
        row("beside the originals", "Option4=False;Option5=True", "Option3 Option5", 0);
        row("the last one wins", "Option2=True;Option3=True", "Option3 Option4", 0);
        row("nonsense mode", "Option1=maybe;Option2=True;Option3=0", "Option2 Option4", 0,
            Where(7));
        row("nonsense keeps", "Option3=", "Option4", 0, Where(9));
        row("nonsense output", "Option4=yes;Option5=", "Option3", 0, Where(10) + u'|' + Where(11));
        row("tab as a word", "TabSel=second", "Option3 Option4", 0, Where(13));
        row("tab too far", "TabSel=2", "Option3 Option4", 0, Where(13));
        row("tab below", "TabSel=-1", "Option3 Option4", 0, Where(13));
        row("no such page", "AnsiCodePage=windows-9999", "Option3 Option4", 0, Where(5));
        row("page of many bytes", "AnsiCodePage=Shift_JIS", "Option3 Option4", 0, Where(5));
        row("vCards", "ReadAsVCards=True", "Option3 Option4 ReadAsVCards", 0);
        row("vCards as a number", "ReadAsVCards=0", "Option3 Option4", 0);
        row("nonsense of vCards", "ReadAsVCards=;Option4=1", "Option3 Option4", 0, Where(15));
        row("page", "AnsiCodePage=windows-1251", "Option3 Option4", 0);
    }
    void Restored() {
        QFETCH(const QString, stored);
        Window window;
        for (const QString& pair : stored.split(u';')) {
            window.settings.values[ToText(pair.section(u'=', 0, 0))] =
                ToText(pair.section(u'=', 1));
        }
        window.Open();
        QTEST(Checked(window), "checked");
        QTEST(window.Find<QTabWidget>("TabControl1")->currentIndex(), "tab");
        QTEST(window.Boxes(), "reports");
        QCOMPARE(window.Find<QWidget>("Frame4")->isEnabled(),
                 window.Find<QRadioButton>("Option4")->isChecked());
        QCOMPARE(ToQString(window.ansi.Page().Name()), stored.endsWith(QStringLiteral("1251"))
                                                           ? QStringLiteral("windows-1251")
                                                           : QStringLiteral("windows-1252"));
    }

    void ChangesAreSavedAtOnce() {
        Window window;
        window.Open();
        const QString third = QStringLiteral("Option1=False Option2=False Option3=True");
        window.settings.writes.clear();
        window.Press("Option3"); // set already
        QCOMPARE(Writes(window), third);
        window.Press("Option1");
        QCOMPARE(Writes(window), QStringLiteral("Option1=True Option2=False Option3=False"));
        window.Find<QRadioButton>("Option3")->setChecked(true); // as the accessibility bus does
        QCOMPARE(Writes(window), third);
        window.Press("Option3");
        QCOMPARE(Writes(window), third);
        window.Press("Option5");
        QCOMPARE(Writes(window), QStringLiteral("Option4=False Option5=True"));
        QVERIFY(!window.Find<QWidget>("Text3")->isEnabled());
        window.Press("Option4");
        QCOMPARE(Writes(window), QStringLiteral("Option4=True Option5=False"));
        QVERIFY(window.Find<QWidget>("PushButton14")->isEnabled());
        window.SelectTab(kSets);
        QCOMPARE(Writes(window), QStringLiteral("TabSel=1"));
        window.Press("ReadAsVCards");
        QCOMPARE(Writes(window), QStringLiteral("ReadAsVCards=True"));
        window.Find<QCheckBox>("ReadAsVCards")->setChecked(false); // as the accessibility bus does
        QCOMPARE(Writes(window), QStringLiteral("ReadAsVCards=False"));
        window.Find<QLineEdit>("Text3")->clear();
        QTest::keyClicks(window.Find<QLineEdit>("Text3"), QStringLiteral("/a"));
        QCOMPARE(Writes(window), QStringLiteral("Output Folder= Output Folder=/ Output Folder=/a"));
    }

    void CodePages() {
        Window window;
        window.settings.values[u"AnsiCodePage"] = u"iso-8859-15";
        window.Open();
        window.settings.writes.clear();
        auto* const combo = window.Find<QComboBox>("CodePage");
        auto* const view = combo->view();
        const auto row = [&](int number) { return combo->model()->index(number, 0); };
        const auto wheel = [&] {
            QWheelEvent event({9, 9}, {9, 9}, {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
            QApplication::sendEvent(combo, &event);
        };
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        combo->addItem(QStringLiteral("refused"), QStringLiteral("refused"));
        using Step = std::pair<std::function<void()>, const char*>;
        for (const auto& [choose, shown] :
             {Step{wheel, "iso-8859-15"}, Step{[&] { combo->setCurrentIndex(11); }, "UTF-8"},
              Step{[&] { combo->setCurrentIndex(11); }, ""},
              Step{[&] { QTest::keyClick(combo, Qt::Key_Up); }, "windows-874"},
              // As the accessibility bus does, and as the mouse does on its way.
              Step{[&] { view->selectionModel()->select(row(2), QItemSelectionModel::Select); },
                   "windows-1251"},
              Step{[&] { view->setCurrentIndex(row(4)); }, ""},
              Step{[&] { combo->setCurrentIndex(12); }, ""},
              Step{[&] { combo->setFocus(), wheel(); }, "windows-1250"}}) {
            choose();
            QApplication::processEvents();
            const QString chosen = QString::fromLatin1(shown);
            const bool news = !chosen.isEmpty() && !chosen.startsWith(QStringLiteral("iso"));
            QCOMPARE(Writes(window), news ? QStringLiteral("AnsiCodePage=") + chosen : QString());
            const QString name = ToQString(window.ansi.Page().Name());
            QCOMPARE(combo->currentData().toString(), name);
            QVERIFY(chosen.isEmpty() || chosen == name);
        }
        QCOMPARE(window.Boxes(),
                 QStringLiteral("in Zentavor2021/08/31.Form1.Combo3_Click at line 1"));
    }

    void ARefusedPageIsMendedByChoosingTheOneInForce() {
        Window window;
        window.settings.values[u"AnsiCodePage"] = u"nonsense";
        window.Open();
        QCOMPARE(window.Boxes(), Where(5));
        window.settings.writes.clear();
        auto* const combo = window.Find<QComboBox>("CodePage");
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        for (const char* const written : {"AnsiCodePage=windows-1252", ""}) {
            combo->showPopup();
            QTest::keyClick(combo->view(), Qt::Key_Return);
            QCOMPARE(Writes(window), QString::fromLatin1(written));
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
        QCOMPARE(Writes(window),
                 QStringLiteral("LastFolderDot=/new/place Output Folder=/new/place/"));
        window.Press("PushButton14");
        QCOMPARE(window.Find<QLineEdit>("Text3")->text(), QStringLiteral("/"));
        const std::vector<TextPair> asked{{u"Please select folder:", u"/before"},
                                          {u"Please select folder:", u"/before"},
                                          {u"Please select folder:", u"/new/place"}};
        QVERIFY(window.pickers.asked == asked);
    }

    void EndedBeforeTheWindowShows() {
        const TestFolder folder;
        const EnvironmentVariable place("XDG_CONFIG_HOME", folder.Native());
        folder.Write("Quillmoor.ini", "[Vexmarrow%20Software]\nOption1=nonsense\n");
        Assembly program;
        Once([] { return TopBox() != nullptr; }, [&] { program.MainWindow().close(); });
        QVERIFY(!program.Start());
    }

    void StoreKeepsEveryText() {
        const TestFolder folder;
        const EnvironmentVariable place("XDG_CONFIG_HOME", folder.Native());
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
        QCOMPARE(ToQString(another.GetSetting(u"LastFolder", u"none")), QStringLiteral("none"));
        const std::string file = folder.Read("Quillmoor.ini");
        QCOMPARE(QString::fromStdString(file),
                 QStringLiteral("[Vexmarrow%20Software]\nOutput%20Folder=x\n"));
        folder.Write("Quillmoor.ini", "[Vexmarrow%20Software]\nLastFolder=/a, b\n");
        QCOMPARE(ToQString(store.GetSetting(u"LastFolder", u"")), QStringLiteral("/a, b"));
    }

    void SettingsFileThatIsNone_data() {
        QTest::addColumn<QString>("reason");
        QTest::newRow("pipe") << QStringLiteral("It is not a regular file.");
        QTest::newRow("device") << QStringLiteral("It is not a regular file.");
        QTest::newRow("folder") << QStringLiteral("It is a folder.");
    }
    void SettingsFileThatIsNone() {
        QFETCH(const QString, reason);
        const QString what = QString::fromLatin1(QTest::currentDataTag());
        const TestFolder folder;
        const EnvironmentVariable place("XDG_CONFIG_HOME", folder.Native());
        const EnvironmentVariable state("XDG_STATE_HOME", folder.Native("state"));
        SystemCalls calls;
        IniSettingsStore store(calls);
        store.SaveSetting(u"TabSel", u"1");
        folder.Remove("Quillmoor.ini");
        if (what == QStringLiteral("folder")) {
            folder.MakeFolder("Quillmoor.ini");
        } else if (what == QStringLiteral("pipe")) {
            QCOMPARE(::mkfifo(folder.Native("Quillmoor.ini").c_str(), 0600), 0);
        } else {
            folder.MakeLink("Quillmoor.ini", "/dev/null");
        }
        store.SaveSetting(u"TabSel", u"2");
        QCOMPARE(ToQString(store.GetSetting(u"TabSel", u"none")), QStringLiteral("none"));
        Assembly program;
        QStringList reports;
        Once([] { return TopBox() != nullptr; },
             [&] {
                 reports << TopBox()->findChildren<QLabel*>().constLast()->text();
                 TopBox()->close();
             });
        QVERIFY(program.Start());
        const QString report = reports.join(u'|');
        QVERIFY2(report.startsWith(QStringLiteral("Could not use the settings file \"%1\": %2\n")
                                       .arg(ToQString(folder.Path("Quillmoor.ini")), reason)),
                 qPrintable(report));
        folder.Remove("Quillmoor.ini");
        store.SaveSetting(u"TabSel", u"1");
        QVERIFY(folder.Read("Quillmoor.ini").ends_with("TabSel=1\n"));
    }

    void HomeFolder() {
        const TestFolder folder;
        const EnvironmentVariable place("XDG_CONFIG_HOME", folder.Native());
        const auto desktop = [](const char* home) {
            const EnvironmentVariable variable("HOME", home);
            SettleHomeFolder();
            return ToQString(DesktopFolder());
        };
        const passwd* const user = ::getpwuid(::geteuid());
        const std::string home = user != nullptr ? user->pw_dir : "";
        const QString ofDatabase = QString::fromStdString(home == "/" ? "" : home);
        QCOMPARE(desktop(""), ofDatabase + QStringLiteral("/Desktop/"));
        QCOMPARE(desktop("relative"), ofDatabase + QStringLiteral("/Desktop/"));
        QCOMPARE(desktop("/home/of"), QStringLiteral("/home/of/Desktop/"));
        QCOMPARE(desktop("/"), QStringLiteral("/Desktop/"));
        folder.Write("user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/\"\n");
        QCOMPARE(desktop("/home/of"), QStringLiteral("/home/of/"));
        QCOMPARE(desktop("/"), QStringLiteral("/"));
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

std::unique_ptr<QObject> MakeStartupTest() {
    return std::make_unique<StartupTest>();
}

} // namespace vexmarrow::test

#include "StartupTest.moc"

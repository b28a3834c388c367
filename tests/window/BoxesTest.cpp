// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Boxes.h"

#include "Suites.h"
#include "Window.h"
#include "app/InputBox.h"
#include "app/LinesEdit.h"
#include "app/MessageBox.h"
#include "app/QtPickers.h"
#include "app/QtPrompts.h"
#include "app/Splash.h"
#include "app/Strings.h"
#include "base/Failure.h"
#include "support/TestFolder.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QDropEvent>
#include <QFileDialog>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QWheelEvent>
#include <QWindow>

namespace vexmarrow::test {
namespace {

/// Shows a box and does `look` with it while it is open.
template <typename Box, typename Ask>
auto WhileOpen(std::function<void(Box&)> look, Ask ask) {
    Once([] { return qobject_cast<Box*>(TopBox()) != nullptr; },
         [look = std::move(look)] {
             auto* const box = qobject_cast<Box*>(TopBox());
             look(*box);
             if (box->isVisible()) {
                 box->reject();
             }
         });
    return ask();
}

} // namespace

/// The real boxes, dialogs and tips.
class BoxesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void Styles_data() {
        QTest::addColumn<int>("style");
        QTest::addColumn<QString>("buttons");
        QTest::addColumn<bool>("icon");
        QTest::addColumn<int>("escape");
        const auto row = [](const char* name, BoxStyle style, const char* buttons, bool icon,
                            Answer escape) {
            QTest::newRow(name) << static_cast<int>(style) << QString::fromLatin1(buttons) << icon
                                << static_cast<int>(escape);
        };
        row("information", BoxStyle::Information, "OK", false, Answer::Ok);
        row("question", BoxStyle::Question, "No Yes", true, Answer::No);
        row("or later", BoxStyle::OrLater, "Later No Yes", true, Answer::Later);
        row("yes or no", BoxStyle::YesNo, "No Yes", false, Answer::No);
        row("critical", BoxStyle::Critical, "OK", true, Answer::Ok);
        row("exclamation", BoxStyle::Exclamation, "OK", true, Answer::Ok);
    }
    void Styles() {
        QFETCH(const int, style);
        const auto show = [&](const std::function<void(MessageBox&)>& look) {
            return WhileOpen<MessageBox>(look, [&] {
                return prompts_.ShowMessage(u"One\r\rtwo <b>three</b>\r\nfour",
                                            static_cast<BoxStyle>(style), u"");
            });
        };
        QStringList buttons;
        QString title;
        QString text;
        bool icon = false;
        auto role = QAccessible::NoRole;
        const Answer escaped = show([&](MessageBox& box) {
            for (const QPushButton* const button : box.findChildren<QPushButton*>()) {
                buttons << button->accessibleName();
            }
            for (const QLabel* const label : box.findChildren<QLabel*>()) {
                icon = icon || !label->pixmap().isNull();
                text += label->text();
                QCOMPARE(label->pixmap().isNull() ? label->textFormat() : Qt::PlainText,
                         Qt::PlainText);
            }
            title = box.windowTitle();
            QCOMPARE(KeyboardFaults(box), QString());
            role = QAccessible::queryAccessibleInterface(&box)->role();
            QTest::keyClick(&box, Qt::Key_Escape);
        });
        buttons.sort();
        QTEST(buttons.join(u' '), "buttons");
        QTEST(icon, "icon");
        QTEST(static_cast<int>(escaped), "escape");
        QCOMPARE(title, QStringLiteral("Vexmarrow"));
        QCOMPARE(text, QStringLiteral("One\n\ntwo <b>three</b>\nfour"));
        QCOMPARE(role, QAccessible::AlertMessage);
        const Answer entered = show([](MessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
        QCOMPARE(entered, buttons.size() > 1 ? Answer::Yes : Answer::Ok);
    }

    void NeverLargerThanTheScreen_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("scrolled"); // a part of it, or nothing
        QTest::addColumn<int>("points");
        const QString path = QStringLiteral("/a/path/that/has/no/blank/in/it/anywhere/");
        const QString question = QStringLiteral("\n\n\nabout them.\n\nAre they to go?");
        const auto row = [](const char* name, const QString& before, const QString& scrolled,
                            const QString& after, int points = 10) {
            QTest::newRow(name) << before + scrolled + after << scrolled << points;
        };
        row("one long line", path.repeated(60), {}, {});
        row("a paragraph", {}, QStringLiteral("word ").repeated(2'000), {});
        row("fifty lines", {}, (path + u'\n').repeated(50), {});
        row("thousands of lines", {}, (path.repeated(10) + u'\n').repeated(20'000), {});
        row("a short question", QStringLiteral("These:\n\n") + path + question, {}, {});
        for (const int points : {10, 24}) {
            row("a long question", QStringLiteral("These:\n\n"), path + (u'\n' + path).repeated(99),
                question, points);
        }
        row("a longer one", QStringLiteral("These:\n\n"), path + (u'\n' + path).repeated(9'999),
            question);
        row("a long question after the rest", {},
            QStringLiteral("b\n\n") + (path + u'\n').repeated(60) + question.repeated(11), {});
    }
    void NeverLargerThanTheScreen() {
        QFETCH(const QString, text);
        QFETCH(const QString, scrolled);
        QFETCH(const int, points);
        const QFont letters = QApplication::font();
        QFont large = letters;
        large.setPointSize(points);
        QApplication::setFont(large);
        QStringList parts;
        QString inScroll, faults, focus;
        QRect frame;
        bool allInSight = true;
        bool equal = false;
        WhileOpen<MessageBox>(
            [&](MessageBox& box) {
                focus = box.focusWidget()->accessibleName();
                faults = KeyboardFaults(box);
                frame = box.frameGeometry();
                for (const auto* child :
                     box.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
                    if (const auto* const label = qobject_cast<const QLabel*>(child)) {
                        parts << label->text();
                        const int needed = label->heightForWidth(label->width());
                        allInSight = allInSight && label->height() >= needed;
                    } else if (const auto* const edit =
                                   qobject_cast<const QPlainTextEdit*>(child)) {
                        parts << edit->toPlainText();
                        inScroll = parts.constLast();
                    }
                    const bool inSight = box.rect().contains(child->geometry());
                    allInSight = allInSight && (inSight || child->isHidden());
                }
                parts.removeAll({});
                const auto buttons = box.findChildren<QPushButton*>();
                equal = buttons[0]->width() == buttons[1]->width();
            },
            [&] { return prompts_.ShowMessage(ToText(text), BoxStyle::Question, u""); });
        QApplication::setFont(letters);
        QCOMPARE(faults, QString());
        const QSize screen = QGuiApplication::primaryScreen()->availableSize();
        QVERIFY(frame.width() <= screen.width() && frame.height() <= screen.height());
        QVERIFY(frame.width() > 100);
        QVERIFY(allInSight);
        QVERIFY(equal);
        QCOMPARE(focus, QStringLiteral("Yes"));
        QCOMPARE(inScroll, scrolled);
        QCOMPARE(parts.join(QStringLiteral("\n\n")), text);
    }

    void LinesTooLongToDraw() {
        const std::u16string row(1'000'000, u'x');
        QString shown;
        WhileOpen<MessageBox>(
            [&](MessageBox& box) { shown = box.findChild<QPlainTextEdit*>()->toPlainText(); },
            [&] {
                return prompts_.ShowMessage(u"One\r\n" + row + u"\r" + row + u"\ntwo\r\n\r\n",
                                            BoxStyle::Question, u"");
            });
        const QString cut = ToQString(Shortened(row, 20'000));
        QCOMPARE(shown, QStringLiteral("One\n") + cut + u'\n' + cut + QStringLiteral("\ntwo\n\n"));
    }

    void FileDialogsOpenWhereThereIsAFolder() {
        const TestFolder folder;
        folder.MakeFolder("home");
        const EnvironmentVariable home("HOME", folder.Native("home"));
        // Where the toolkit keeps how its dialogs looked.
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, ToQString(folder.Path()));
        QtPickers pickers(eventLoop_);
        const auto openedAt = [&](auto ask, const QString& goTo = {}) {
            QString folders;
            WhileOpen<QFileDialog>(
                [&](QFileDialog& dialog) {
                    folders = dialog.directory().path();
                    if (!goTo.isEmpty()) {
                        dialog.selectFile(goTo);
                        static_cast<QDialog&>(dialog).accept();
                    }
                },
                ask);
            return folders.mid(ToQString(folder.Path()).size());
        };
        const auto open = [&] { return pickers.OpenFiles({}); };
        const auto save = [&] { return pickers.SaveFile({}); };
        const auto browse = [&](const char* start) {
            const std::u16string place = *start == 0 ? std::u16string() : folder.Path(start);
            return openedAt([&] { return pickers.BrowseForFolder(u"", place); });
        };
        const QString last = ToQString(folder.Path("a/b/c"));
        QCOMPARE(openedAt(open), QStringLiteral("/home"));
        QCOMPARE(openedAt(save), QStringLiteral("/home"));
        folder.MakeFolder("a/b");
        QCOMPARE(openedAt(save, last), QStringLiteral("/home"));
        QCOMPARE(openedAt(open), QStringLiteral("/a/b"));
        folder.Remove("a/b");
        QCOMPARE(openedAt(open), QStringLiteral("/a"));
        QCOMPARE(browse("a/gone/deep"), QStringLiteral("/a"));
        QCOMPARE(browse(""), QStringLiteral("/home"));
    }

    void InputBoxAnswers() {
        const std::u16string suggestion(40'000, u's');
        const auto ask = [&](const std::function<void(InputBox&)>& look) {
            return WhileOpen<InputBox>(look, [&] { return prompts_.AskForText(u"?", suggestion); });
        };
        QCOMPARE(ask([](InputBox& box) {
                     QCOMPARE(KeyboardFaults(box), QString());
                     QTest::keyClick(&box, Qt::Key_Return);
                 }),
                 suggestion);
        QCOMPARE(ask([](InputBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }),
                 std::u16string());
        QCOMPARE(ask([](InputBox& box) {
                     auto* const line = box.findChild<QLineEdit*>();
                     QTest::keyClicks(line, QStringLiteral("new")); // replaces what is selected
                     QTest::keyClick(line, Qt::Key_Return);
                 }),
                 std::u16string(u"new"));
    }

    void Help() {
        Window window;
        window.Open();
        window.Press("PushButton5");
        QCOMPARE(window.Boxes(),
                 QStringLiteral("This software is not intended to be used on non-text-based files "
                                "such as media files, executables, etc.\r\r"
                                "To contact us, please use the online contact form at "
                                "https://vexmarrow.example/contact"));
    }

    void LoadSets() {
        TestFolder folder;
        folder.Write("sets \xE9.txt", "a=>b\nc::d\n");
        Window window;
        window.Open();
        const auto open = [&](const std::function<void(QDialog&, QLineEdit&, QLineEdit&)>& look) {
            const auto inside = [&](QDialog& form2) {
                look(form2, *form2.findChildren<QLineEdit*>()[0],
                     *form2.findChildren<QLineEdit*>()[1]);
            };
            WhileOpen<QDialog>(inside, [&] { window.Press("PushButton10"); });
        };
        open([&](QDialog& form2, QLineEdit& file, QLineEdit& separator) {
            QStringList chain{form2.windowTitle(), separator.text()};
            for (const QWidget* w = &file; chain.size() < 8; w = w->nextInFocusChain()) {
                chain << w->objectName() + u' ' + w->accessibleName();
            }
            QCOMPARE(chain.join(u'|'),
                     QStringLiteral("Load Sets|::|Text1 File To Load:|PushButton16 Browse|"
                                    "Text2 Separator:|PushButton1 Load|PushButton2 Cancel|"
                                    "PushButton3 Format help"));
            QCOMPARE(KeyboardFaults(form2), QString());
            window.settings.writes.clear();
            separator.setFocus();
            QTest::keyClicks(&separator, QStringLiteral("x"));
            QTest::keyClick(&separator, Qt::Key_Return); // nothing to load: not a word
            separator.setText(QStringLiteral("=>"));
            const std::vector<TextPair> writes{{u"Form2.Text2", u"::x"}, {u"Form2.Text2", u"=>"}};
            QVERIFY(window.settings.writes == writes && window.prompts.boxes.empty());
            window.pickers.files = {{folder.Path("sets \xE9.txt")}, {}};
            for (const char* const name : {"PushButton16", "PushButton16", "PushButton3"}) {
                form2.findChild<QPushButton*>(QString::fromLatin1(name))->click();
            }
            QCOMPARE(window.prompts.boxes.back().text.size(), 316U); // the help
            QVERIFY(form2.isVisible());
            QTest::keyClick(&file, Qt::Key_Return);
            QVERIFY(!form2.isVisible());
        });
        QCOMPARE(window.Find<QComboBox>("Combo1")->count(), 1);
        open([&](QDialog& form2, QLineEdit& file, QLineEdit& separator) {
            QCOMPARE(file.text() + separator.text(), QStringLiteral("=>"));
            separator.clear();
            QTest::keyClick(&file, Qt::Key_Return); // a message
            QVERIFY(form2.isVisible());
            form2.findChild<QPushButton*>(QStringLiteral("PushButton2"))->click();
            QVERIFY(!form2.isVisible());
        });
        open([&](QDialog&, QLineEdit&, QLineEdit&) { window.form->close(); });
        QCOMPARE(window.prompts.boxes.size(), 2U);
    }

    void WindowsBehindABox() {
        Window window;
        QtPrompts prompts(window.eventLoop);
        window.shown = &prompts;
        window.Open();
        prompts.SetOwner(window.form.get());
        window.SetText1(u"one\n\n\n\n\n\n\n\n\n\ntwo");
        auto* const text = window.Find<LinesEdit>("Text1");
        auto* const codePages = window.Find<QComboBox>("CodePage");
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        text->setFocus();
        const auto state = [&] {
            return QStringLiteral("%1 %2 %3 %4")
                .arg(ToQString(text->Text()).remove(QStringLiteral("\r\n")))
                .arg(text->verticalScrollBar()->value())
                .arg(window.Rows())
                .arg(QApplication::activePopupWidget() != nullptr);
        };
        QMimeData files;
        files.setData(QStringLiteral("text/uri-list"), "file:///a.vcf\r\n");
        const auto useAll = [&](QWidget& behind, QWidget& button) {
            QWindow* const desktops = behind.windowHandle();
            QTest::mouseClick(desktops, Qt::LeftButton, {},
                              button.mapTo(&behind, button.rect().center()));
            QTest::keyClick(desktops, Qt::Key_X);
            QTest::keyClick(desktops, Qt::Key_H, Qt::AltModifier);
            QTest::keyClick(&button, Qt::Key_Space);
            QWheelEvent wheel({9, 9}, text->mapToGlobal(QPoint(9, 9)), {}, {0, -120}, {}, {},
                              Qt::NoScrollPhase, false);
            QApplication::sendEvent(text->viewport(), &wheel);
            auto* const list = window.Find<QTreeView>("ListView1")->viewport();
            QDragEnterEvent enter({9, 9}, Qt::CopyAction, &files, {}, {});
            QApplication::sendEvent(list, &enter);
            QVERIFY(!enter.isAccepted());
            QDropEvent drop({9, 9}, Qt::CopyAction, &files, {}, {});
            QApplication::sendEvent(list, &drop);
            static_cast<QAbstractButton&>(button).click(); // as the accessibility bus does
            QCoreApplication::processEvents();
        };
        const QString before = state();
        codePages->showPopup();
        WhileOpen<MessageBox>(
            [&](MessageBox& box) {
                useAll(*window.form, *window.Find<QWidget>("PushButton7"));
                QCOMPARE(TopBox(), &box);
                QCOMPARE(state(), before);
                // The toolkit lets nobody close a window behind a modal one.
                QVERIFY(QGuiApplication::modalWindow() == nullptr);
                const QSignalSpy focus(qApp, &QGuiApplication::focusWindowChanged);
                window.form->activateWindow(); // which a click does
                QTRY_VERIFY_WITH_TIMEOUT(focus.size() >= 2 &&
                                             QGuiApplication::focusWindow() == box.windowHandle(),
                                         kDeadline);
            },
            [&] { window.Press("PushButton5"); });
        window.form->activateWindow(); // as the window manager does once the box has gone
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        QCOMPARE(QApplication::focusWidget(), text);

        bool closed = false;
        WhileOpen<QDialog>(
            [&](QDialog& form2) {
                WhileOpen<MessageBox>(
                    [&](MessageBox& box) {
                        useAll(*window.form, *window.Find<QWidget>("PushButton7"));
                        useAll(form2, *form2.findChild<QWidget*>(QStringLiteral("PushButton2")));
                        form2.windowHandle()->close();
                        QVERIFY(form2.isVisible());
                        QCOMPARE(TopBox(), &box);
                        QVERIFY(QGuiApplication::modalWindow() == nullptr);
                        window.form->windowHandle()->close();
                        closed = !box.isVisible() && !form2.isVisible();
                    },
                    [&] { form2.findChild<QPushButton*>(QStringLiteral("PushButton3"))->click(); });
            },
            [&] { window.Press("PushButton10"); });
        QVERIFY(closed && TopBox() == nullptr);
        QCOMPARE(state(), before);
    }

    void Tips() {
        const TestFolder folder;
        MemorySettings settings;
        SystemCalls calls;
        Splash splash(calls, settings, folder.Path());
        splash.SplashShow();
        QVERIFY(!splash.isVisible()); // there is no folder
        const QPixmap tips(QStringLiteral(VEXMARROW_RESOURCES "/Splash/tips.png"));
        folder.Write("Splash/.hidden", "no picture");
        QVERIFY(tips.save(ToQString(folder.Path("Splash/tips.png"))));
        for (const auto& [value, shown] :
             {std::pair{u"1", false}, {u"-2", false}, {u"0.0", true}, {u"0", true}}) {
            settings.values[u"ShowAgain"] = value;
            splash.close();
            splash.SplashShow();
            QCOMPARE(splash.isVisible(), shown);
        }
        const int strip = qRound(300 / 1440.0 * splash.logicalDpiX());
        QCOMPARE(splash.frameGeometry().size(), tips.size() + QSize(0, strip));
        QCOMPARE(splash.windowTitle(), QStringLiteral("Vexmarrow Software"));
        QCOMPARE(KeyboardFaults(splash), QString());
        splash.findChild<QCheckBox*>()->click();
        splash.findChild<QCheckBox*>()->click();
        const std::vector<TextPair> writes{{u"ShowAgain", u"1"}, {u"ShowAgain", u"0"}};
        QVERIFY(settings.writes == writes);
        settings.values[u"ShowAgain"] = u"x";
        QVERIFY_THROWS_EXCEPTION(Failure, splash.SplashShow());
    }

    void NoBoxAfterTheEnd() {
        QtEventLoop ended;
        QtPrompts prompts(ended);
        Once([] { return TopBox() != nullptr; },
             [&] {
                 ended.End();
                 TopBox()->close();
             });
        QVERIFY_THROWS_EXCEPTION(ProgramEnded, prompts.ShowMessage(u"open", BoxStyle::YesNo, u""));
        QVERIFY_THROWS_EXCEPTION(ProgramEnded, prompts.ShowMessage(u"late", BoxStyle::YesNo, u""));
        QVERIFY_THROWS_EXCEPTION(ProgramEnded, prompts.AskForText(u"late", u""));
        QVERIFY_THROWS_EXCEPTION(ProgramEnded, ended.Yield({}));
    }

private:
    QtEventLoop eventLoop_;
    QtPrompts prompts_{eventLoop_};
};

std::unique_ptr<QObject> MakeBoxesTest() {
    return std::make_unique<BoxesTest>();
}

} // namespace vexmarrow::test

#include "BoxesTest.moc"

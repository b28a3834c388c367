// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/InputBox.h"
#include "app/MessageBox.h"
#include "app/QtPickers.h"
#include "app/QtPrompts.h"
#include "app/ShownText.h"
#include "app/Splash.h"
#include "app/WaitingBoxes.h"
#include "base/Failure.h"

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

/// Calls `ask`, which opens a box, calls `look` with the box while it is open, and closes it.
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

struct StyleCase {
    const char* name;
    BoxStyle style;
    QString buttons; // in the order of the alphabet
    bool icon;
    Answer escape; // of the key
};
const std::vector<StyleCase> kStyleCases{
    {"information", BoxStyle::Information, u"OK"_s, false, Answer::Ok},
    {"question", BoxStyle::Question, u"No Yes"_s, true, Answer::No},
    {"or later", BoxStyle::OrLater, u"Later No Yes"_s, true, Answer::Later},
    {"yes or no", BoxStyle::YesNo, u"No Yes"_s, false, Answer::No},
    {"critical", BoxStyle::Critical, u"OK"_s, true, Answer::Ok},
    {"exclamation", BoxStyle::Exclamation, u"OK"_s, true, Answer::Ok},
};

const QString kPath = u"/a/path/that/has/no/blank/in/it/anywhere/"_s;
const QString kPaths = kPath + u'\n';
const QString kAbout = u"These:\n\n"_s;
const QString kQuestion = u"\n\n\nabout them.\n\nAre they to go?"_s;

/// A text of a question; a long one is partly scrolled.
struct LongTextCase {
    const char* name;
    QString before;
    QString scrolled = {};
    QString after = {};
    int points = 10; // size of the letters
};
const std::vector<LongTextCase> kLongTextCases{
    {"one long line", kPath.repeated(60)},
    {"a paragraph", {}, u"word "_s.repeated(2'000)},
    {"fifty lines", {}, kPaths.repeated(50)},
    {"thousands of lines", {}, (kPath.repeated(10) + u'\n').repeated(20'000)},
    {"a short question", kAbout + kPath + kQuestion},
    {"a long question", kAbout, kPaths.repeated(99) + kPath, kQuestion},
    {"a long question in large letters", kAbout, kPaths.repeated(99) + kPath, kQuestion, 24},
    {"a longer question", kAbout, kPaths.repeated(9'999) + kPath, kQuestion},
    {"a long question at the end", {}, u"b\n\n"_s + kPaths.repeated(60) + kQuestion.repeated(11)},
};

} // namespace

/// The real boxes, dialogs and tips.
class BoxesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void Styles_data() { AddRows(kStyleCases); }
    void Styles() {
        const StyleCase& row = CurrentRow(kStyleCases);
        const auto show = [&](const std::function<void(MessageBox&)>& look) {
            return WhileOpen<MessageBox>(look, [&] {
                return prompts_.ShowMessage(u"One\r\rtwo <b>three</b>\r\nfour", row.style, u"");
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
        QCOMPARE(buttons.join(u' '), row.buttons);
        QCOMPARE(icon, row.icon);
        QCOMPARE(escaped, row.escape);
        QCOMPARE(title, u"Vexmarrow"_s);
        QCOMPARE(text, u"One\n\ntwo <b>three</b>\nfour"_s);
        QCOMPARE(role, QAccessible::AlertMessage);
        const Answer entered = show([](MessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); });
        QCOMPARE(entered, buttons.size() > 1 ? Answer::Yes : Answer::Ok);
    }

    void NeverLargerThanTheScreen_data() { AddRows(kLongTextCases); }
    void NeverLargerThanTheScreen() {
        const LongTextCase& row = CurrentRow(kLongTextCases);
        const QString text = row.before + row.scrolled + row.after;
        const QFont letters = QApplication::font();
        QFont large = letters;
        large.setPointSize(row.points);
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
        QCOMPARE(focus, u"Yes"_s);
        QCOMPARE(inScroll, row.scrolled);
        QCOMPARE(parts.join(u"\n\n"_s), text);
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
        QCOMPARE(shown, u"One\n"_s + cut + u'\n' + cut + u"\ntwo\n\n"_s);
    }

    void FileDialogsOpenWhereThereIsAFolder() {
        const TestFolder folder;
        folder.MakeFolder("home");
        const auto home = WithVariable("HOME", folder.Native("home"));
        // In this file the toolkit keeps how its dialogs looked.
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
        QCOMPARE(openedAt(open), u"/home"_s);
        QCOMPARE(openedAt(save), u"/home"_s);
        folder.MakeFolder("a/b");
        QCOMPARE(openedAt(save, last), u"/home"_s);
        QCOMPARE(openedAt(open), u"/a/b"_s);
        folder.Remove("a/b");
        QCOMPARE(openedAt(open), u"/a"_s);
        QCOMPARE(browse("a/gone/deep"), u"/a"_s);
        QCOMPARE(browse(""), u"/home"_s);
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
                     QTest::keyClicks(line, u"new"_s); // replaces what is selected
                     QTest::keyClick(line, Qt::Key_Return);
                 }),
                 std::u16string(u"new"));
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
            QCOMPARE(form2.windowTitle() + separator.text(), u"Load Sets::"_s);
            QCOMPARE(KeyboardFaults(form2), QString());
            window.settings.writes.clear();
            separator.setFocus();
            QTest::keyClicks(&separator, u"x"_s);
            QTest::keyClick(&separator, Qt::Key_Return); // no file is named: nothing happens
            separator.setText(u"=>"_s);
            const std::vector<TextPair> writes{{u"Form2.Text2", u"::x"}, {u"Form2.Text2", u"=>"}};
            QVERIFY(window.settings.writes == writes && window.prompts.boxes.empty());
            window.pickers.files = {{folder.Path("sets \xE9.txt")}, {}};
            for (const char* const name : {"PushButton16", "PushButton16", "PushButton3"}) {
                form2.findChild<QPushButton*>(QString::fromLatin1(name))->click();
            }
            QVERIFY(
                window.Boxes().startsWith(u"If the text file you are loading looks like this:"_s));
            QVERIFY(form2.isVisible());
            QTest::keyClick(&file, Qt::Key_Return);
            QVERIFY(!form2.isVisible());
        });
        QCOMPARE(window.Find<QComboBox>("Combo1")->count(), 1);
        open([&](QDialog& form2, QLineEdit& file, QLineEdit& separator) {
            QCOMPARE(file.text() + separator.text(), u"=>"_s);
            separator.clear();
            QTest::keyClick(&file, Qt::Key_Return); // a message
            QVERIFY(form2.isVisible());
            form2.findChild<QPushButton*>(u"PushButton2"_s)->click();
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
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        text->setFocus();
        const auto state = [&] {
            return u"%1 %2 %3 %4"_s.arg(ToQString(text->Text()).remove(u"\r\n"_s))
                .arg(text->verticalScrollBar()->value())
                .arg(window.Rows())
                .arg(QApplication::activePopupWidget() != nullptr);
        };
        QMimeData files;
        files.setData(u"text/uri-list"_s, "file:///a.vcf\r\n");
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
        window.CodePages()->showPopup();
        WhileOpen<MessageBox>(
            [&](MessageBox& box) {
                useAll(*window.form, *window.Find<QWidget>("PushButton7"));
                QCOMPARE(TopBox(), &box);
                QCOMPARE(state(), before);
                // The toolkit does not let users close a window behind a modal one.
                QVERIFY(QGuiApplication::modalWindow() == nullptr);
                const QSignalSpy focus(qApp, &QGuiApplication::focusWindowChanged);
                window.form->activateWindow(); // which a click does
                QTRY_VERIFY_WITH_TIMEOUT(focus.size() >= 2 &&
                                             QGuiApplication::focusWindow() == box.windowHandle(),
                                         kDeadline);
            },
            [&] { window.Press("PushButton5"); });
        window.form->activateWindow(); // as the window manager does when the box is closed
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        QCOMPARE(QApplication::focusWidget(), text);

        bool closed = false;
        WhileOpen<QDialog>(
            [&](QDialog& form2) {
                WhileOpen<MessageBox>(
                    [&](MessageBox& box) {
                        useAll(*window.form, *window.Find<QWidget>("PushButton7"));
                        useAll(form2, *form2.findChild<QWidget*>(u"PushButton2"_s));
                        form2.windowHandle()->close();
                        QVERIFY(form2.isVisible());
                        QCOMPARE(TopBox(), &box);
                        QVERIFY(QGuiApplication::modalWindow() == nullptr);
                        window.form->windowHandle()->close();
                        closed = !box.isVisible() && !form2.isVisible();
                    },
                    [&] { form2.findChild<QPushButton*>(u"PushButton3"_s)->click(); });
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
        QCOMPARE(splash.windowTitle(), u"Vexmarrow Software"_s);
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

[[maybe_unused]] const bool kAdded = AddSuite<BoxesTest>("BoxesTest");

} // namespace vexmarrow::test

#include "BoxesTest.moc"

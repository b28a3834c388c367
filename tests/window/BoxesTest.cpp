// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/InputBox.h"
#include "app/MessageBox.h"
#include "app/QtPrompts.h"
#include "app/Strings.h"
#include "shell/Titles.h"

#include <QAccessible>
#include <QApplication>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTimer>

namespace vexmarrow::test {
namespace {

/// Shows a box and does `look` with it while it is open.
template <typename Box, typename Ask>
auto WhileOpen(std::function<void(Box&)> look, Ask ask) {
    Once([] { return qobject_cast<Box*>(QApplication::activeModalWidget()) != nullptr; },
         [look = std::move(look)] {
             auto* const box = qobject_cast<Box*>(QApplication::activeModalWidget());
             look(*box);
             if (box->isVisible()) {
                 box->reject();
             }
         });
    return ask();
}

} // namespace

/// The real message and input boxes.
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
                buttons << button->text();
            }
            for (const QLabel* const label : box.findChildren<QLabel*>()) {
                icon = icon || !label->pixmap().isNull();
                text += label->text();
                QCOMPARE(label->pixmap().isNull() ? label->textFormat() : Qt::PlainText,
                         Qt::PlainText);
            }
            title = box.windowTitle();
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
        QCOMPARE(entered, buttons.size() == 2 ? Answer::Yes : Answer::Ok);
    }

    void NeverLargerThanTheScreen_data() {
        QTest::addColumn<QString>("text");
        const QString path = QStringLiteral("/a/path/that/has/no/blank/in/it/anywhere/");
        QTest::newRow("one long line") << path.repeated(60);
        QTest::newRow("a paragraph") << QStringLiteral("word ").repeated(2'000);
        QTest::newRow("fifty lines") << (path + u'\n').repeated(50);
        QTest::newRow("thousands of lines") << (path.repeated(10) + u'\n').repeated(20'000);
    }
    void NeverLargerThanTheScreen() {
        QFETCH(const QString, text);
        QString shown;
        QRect frame;
        bool buttonInSight = false;
        WhileOpen<MessageBox>(
            [&](MessageBox& box) {
                frame = box.frameGeometry();
                const auto* const button = box.findChild<QPushButton*>();
                buttonInSight =
                    box.rect().contains(QRect(button->mapTo(&box, QPoint(0, 0)), button->size()));
                const auto* const edit = box.findChild<QPlainTextEdit*>();
                shown = edit != nullptr ? edit->toPlainText()
                                        : box.findChildren<QLabel*>().constLast()->text();
            },
            [&] { return prompts_.ShowMessage(ToText(text), BoxStyle::Question, u""); });
        const QSize screen = QGuiApplication::primaryScreen()->availableSize();
        QVERIFY(frame.width() <= screen.width() && frame.height() <= screen.height());
        QVERIFY(frame.width() > 100);
        QVERIFY(buttonInSight);
        QCOMPARE(shown, text);
    }

    void InputBoxAnswers() {
        const std::u16string suggestion(40'000, u's');
        const auto ask = [&](const std::function<void(InputBox&)>& look) {
            return WhileOpen<InputBox>(look, [&] { return prompts_.AskForText(u"?", suggestion); });
        };
        QCOMPARE(ask([](InputBox& box) { QTest::keyClick(&box, Qt::Key_Return); }), suggestion);
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

    void NoBoxAfterTheEnd() {
        QtEventLoop ended;
        QtPrompts prompts(ended);
        Once([] { return QApplication::activeModalWidget() != nullptr; },
             [&] {
                 ended.End();
                 QApplication::activeModalWidget()->close();
             });
        QVERIFY_EXCEPTION_THROWN(prompts.ShowMessage(u"open", BoxStyle::YesNo, u""), ProgramEnded);
        QVERIFY_EXCEPTION_THROWN(prompts.ShowMessage(u"late", BoxStyle::YesNo, u""), ProgramEnded);
        QVERIFY_EXCEPTION_THROWN(prompts.AskForText(u"late", u""), ProgramEnded);
        QVERIFY_EXCEPTION_THROWN(ended.Yield({}), ProgramEnded);
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

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/Colours.h"

#include <QStyle>

namespace vexmarrow::test {
namespace {

/// How many pixels of two pictures of the same place differ so that anybody can see it.
int Seen(const QImage& one, const QImage& other) {
    int seen = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            seen += Contrast(one.pixelColor(x, y), other.pixelColor(x, y)) >= kLeastOfOutlines;
        }
    }
    return seen;
}

QImage Picture(QWidget& widget, const QRect& place) {
    QApplication::processEvents();
    return widget.grab(place).toImage();
}

} // namespace

/// What is drawn can be seen, whatever the palette.
class LooksTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void Palettes_data() {
        QTest::addColumn<QStringList>(
            "colours"); // window, lists, buttons, letters, selection, its letters
        const auto row = [](const char* name, const char* colours) {
            QTest::newRow(name) << QString::fromLatin1(colours).split(u' ');
        };
        row("light", "#efefef #ffffff #efefef #000000 #308cc6 #ffffff");
        row("bluish light", "#eff0f1 #fcfcfc #fcfcfc #232627 #3daee9 #fcfcfc");
        row("bluish dark", "#31363b #232629 #31363b #eff0f1 #3daee9 #eff0f1");
        row("grey dark", "#353535 #2d2d2d #353535 #eeeeec #15539e #ffffff");
        row("black", "#000000 #000000 #000000 #ffffff #1aebff #000000");
        row("white", "#ffffff #ffffff #ffffff #000000 #37006e #ffffff");
    }
    void Palettes() {
        QFETCH(const QStringList, colours);
        QPalette palette{QColor(colours[2]), QColor(colours[0])};
        for (const auto& [role, which] : {std::pair{QPalette::WindowText, 3},
                                          {QPalette::Text, 3},
                                          {QPalette::ButtonText, 3},
                                          {QPalette::Base, 1},
                                          {QPalette::Highlight, 4},
                                          {QPalette::HighlightedText, 5}}) {
            palette.setColor(role, QColor(colours[which]));
        }
        QApplication::style()->polish(palette); // as it does with a desktop's
        const QPalette before = QApplication::palette();
        QApplication::setPalette(palette);
        QApplication::processEvents();
        Window window;
        window.Open();
        QVERIFY(QTest::qWaitForWindowActive(window.form.get(), kDeadline));
        constexpr int kEdge = 10; // a stretch of a frame, in pixels
        for (const char* const name : {"Option1", "ReadAsVCards", "ListView1", "Text1", "CodePage",
                                       "PushButton2", "Frame2", "TabControl1"}) {
            auto* const control = window.Find<QWidget>(name);
            const QRect left(0, (control->height() - kEdge) / 2, 2 * kEdge, kEdge);
            const QImage picture = Picture(*control, left);
            QImage without(picture.size(), QImage::Format_RGB32);
            without.fill(picture.pixelColor(left.width() - 1, 0));
            QVERIFY2(Seen(picture, without) >= kEdge / 2, name); // curves have fewer
        }
        auto* const tabs = window.Find<QTabWidget>("TabControl1")->tabBar();
        tabs->setObjectName(QStringLiteral("tabs"));
        for (const char* const name :
             {"Option3", "ReadAsVCards", "ListView1", "Text1", "Text3", "CodePage", "PushButton2",
              "PushButton1", "PushButton14", "tabs"}) {
            auto* const control = window.Find<QWidget>(name);
            window.form->setFocus();
            const QImage without = Picture(*control, control->rect());
            control->setFocus(Qt::TabFocusReason);
            const QImage with = Picture(*control, control->rect());
            QVERIFY2(Seen(with, without) >= control->height(), name);
        }

        // Letters: quiet ones, selected ones, and those of the button that is to be seen first.
        const QPalette used = QApplication::palette();
        for (const auto& [letters, on] : {std::pair{QPalette::PlaceholderText, QPalette::Base},
                                          {QPalette::PlaceholderText, QPalette::Window},
                                          {QPalette::HighlightedText, QPalette::Highlight}}) {
            QVERIFY(Contrast(used.color(letters), used.color(on)) >= kLeastOfLetters);
        }
        auto* const start = window.Find<QPushButton>("PushButton1");
        window.form->setFocus();
        const QImage button = Picture(*start, start->rect());
        double most = 0;
        for (int x = 0; x < button.width(); ++x) {
            for (int y = button.height() / 4; y < button.height() * 3 / 4; ++y) {
                most = std::max(most,
                                Contrast(button.pixelColor(x, y), button.pixelColor(kEdge, kEdge)));
            }
        }
        QVERIFY(most >= kLeastOfLetters);
        QApplication::setPalette(before);
        QApplication::processEvents();
    }
};

std::unique_ptr<QObject> MakeLooksTest() {
    return std::make_unique<LooksTest>();
}

} // namespace vexmarrow::test

#include "LooksTest.moc"

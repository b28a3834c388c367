// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/Colours.h"
#include "app/OutlinedStyle.h"
#include "app/SetsTable.h"

#include <QProgressBar>
#include <QProxyStyle>
#include <QScrollBar>
#include <QSplitter>
#include <QStyleFactory>
#include <QStyleOption>

#include <map>

namespace vexmarrow::test {
namespace {

struct PaletteCase {
    const char* name;
    const char* window;
    const char* lists;
    const char* buttons;
    const char* letters;
    const char* selection;
    const char* selectedLetters;
};
constexpr PaletteCase kPalettes[]{
    {.name = "light",
     .window = "#efefef",
     .lists = "#ffffff",
     .buttons = "#efefef",
     .letters = "#000000",
     .selection = "#308cc6",
     .selectedLetters = "#ffffff"},
    {.name = "bluish light",
     .window = "#eff0f1",
     .lists = "#fcfcfc",
     .buttons = "#fcfcfc",
     .letters = "#232627",
     .selection = "#3daee9",
     .selectedLetters = "#fcfcfc"},
    {.name = "bluish dark",
     .window = "#31363b",
     .lists = "#232629",
     .buttons = "#31363b",
     .letters = "#eff0f1",
     .selection = "#3daee9",
     .selectedLetters = "#eff0f1"},
    {.name = "grey dark",
     .window = "#353535",
     .lists = "#2d2d2d",
     .buttons = "#353535",
     .letters = "#eeeeec",
     .selection = "#15539e",
     .selectedLetters = "#ffffff"},
    {.name = "black",
     .window = "#000000",
     .lists = "#000000",
     .buttons = "#000000",
     .letters = "#ffffff",
     .selection = "#1aebff",
     .selectedLetters = "#000000"},
    {.name = "white",
     .window = "#ffffff",
     .lists = "#ffffff",
     .buttons = "#ffffff",
     .letters = "#000000",
     .selection = "#37006e",
     .selectedLetters = "#ffffff"},
};

/// A stretch of a frame, in pixels, that is looked at. Half of it must be seen, as curves have
/// fewer pixels than straight lines.
constexpr int kStretch = 10;

QImage Picture(QWidget& widget, const QRect& place) {
    QApplication::processEvents();
    return widget.grab(place).toImage();
}
QImage Picture(QWidget& widget) {
    return Picture(widget, widget.rect());
}

/// The number of pixels in which two pictures of the same place differ visibly.
int Difference(const QImage& one, const QImage& other) {
    int pixels = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            pixels += Contrast(one.pixelColor(x, y), other.pixelColor(x, y)) >= kLeastOfOutlines;
        }
    }
    return pixels;
}

/// The number of pixels of a picture that differ visibly from its upper right corner.
int Marks(const QImage& picture) {
    QImage ground(picture.size(), QImage::Format_RGB32);
    ground.fill(picture.pixelColor(picture.width() - 1, 0));
    return Difference(picture, ground);
}

/// Whether an edge can be seen in a widget where a short way crosses it, from `start` to the right.
bool HasEdge(QWidget& widget, const QPoint& start) {
    const QRect way(start - QPoint(0, kStretch / 2), QSize(2 * kStretch, kStretch));
    return Marks(Picture(widget, way)) >= kStretch / 2;
}
QPoint LeftOf(const QRect& place) {
    return {place.left(), place.center().y()};
}
bool HasEdge(QWidget& widget) {
    return HasEdge(widget, LeftOf(widget.rect()));
}

/// The contrast of the letters within `place` of a widget with the commonest colour there.
double ContrastOfLetters(QWidget& widget, const QRect& place) {
    const QImage picture = Picture(widget, place);
    std::map<QRgb, int> colours;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ++colours[picture.pixel(x, y)];
        }
    }
    const auto rarer = [](const auto& one, const auto& other) { return one.second < other.second; };
    const QColor ground(std::max_element(colours.begin(), colours.end(), rarer)->first);
    double most = 1;
    for (const auto& [colour, pixels] : colours) {
        most = std::max(most, Contrast(QColor(colour), ground));
    }
    return most;
}

} // namespace

/// What the window draws can be seen and read in every palette. Each test runs for each palette.
class LooksTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data() {
        QTest::addColumn<int>("palette");
        for (int i = 0; i < static_cast<int>(std::size(kPalettes)); ++i) {
            QTest::newRow(kPalettes[i].name) << i;
        }
    }
    void init() {
        QFETCH_GLOBAL(const int, palette);
        const PaletteCase& colours = kPalettes[palette];
        QPalette all{QColor(colours.buttons), QColor(colours.window)};
        for (const auto& [role, colour] : {std::pair{QPalette::WindowText, colours.letters},
                                           {QPalette::Text, colours.letters},
                                           {QPalette::ButtonText, colours.letters},
                                           {QPalette::Base, colours.lists},
                                           {QPalette::Highlight, colours.selection},
                                           {QPalette::HighlightedText, colours.selectedLetters}}) {
            all.setColor(role, QColor(colour));
        }
        QApplication::style()->polish(all); // as the style does with the palette of a desktop
        before_ = QApplication::palette();
        QApplication::setPalette(all);
        window_ = std::make_unique<Window>();
        window_->Open();
        QVERIFY(QTest::qWaitForWindowActive(window_->form.get(), kDeadline));
        Tabs()->setObjectName(QStringLiteral("tabs"));
    }
    void cleanup() {
        window_.reset();
        QApplication::setPalette(before_);
        QApplication::processEvents();
    }

    void Frames() {
        // The option and the box are not set: they consist of their frames.
        for (const char* const name : {"Option1", "ReadAsVCards", "ListView1", "Text1", "Text3",
                                       "PushButton2", "Frame2", "TabControl1"}) {
            QVERIFY2(HasEdge(*window_->Find<QWidget>(name)), name);
        }
        QVERIFY(HasEdge(*window_->CodePages()));
        // This button is a coloured face, which differs from the window beside it.
        const auto* const start = window_->Find<QWidget>("PushButton1");
        const QPoint right(start->rect().right() - kStretch, start->rect().center().y());
        QVERIFY(HasEdge(*window_->form, start->mapTo(window_->form.get(), right)));
        window_->SelectTab(kSets);
        for (const char* const name : {"Combo1", "SetsTable", "PushButton7"}) {
            QVERIFY2(HasEdge(*window_->Find<QWidget>(name)), name);
        }
        for (const Tab tab : {kSinglePair, kSets}) {
            window_->SelectTab(tab);
            QVERIFY(HasEdge(*Tabs(), LeftOf(Tabs()->tabRect(kSinglePair))));
            QVERIFY(HasEdge(*Tabs(), LeftOf(Tabs()->tabRect(kSets))));
        }
        QProgressBar progress;
        progress.setTextVisible(false);
        progress.resize(progress.sizeHint());
        QVERIFY(HasEdge(progress));
        QScrollBar bar(Qt::Vertical);
        QStyleOptionSlider option;
        option.initFrom(&bar);
        option.maximum = bar.maximum();
        option.pageStep = bar.pageStep();
        option.orientation = Qt::Vertical;
        const QRect slider = bar.style()->subControlRect(QStyle::CC_ScrollBar, &option,
                                                         QStyle::SC_ScrollBarSlider, &bar);
        QVERIFY(HasEdge(bar, LeftOf(slider)));
        QVERIFY(Marks(Picture(*window_->form->findChild<QSplitter*>()->handle(1))) >= kStretch);
    }

    void SetOptions() {
        for (const char* const name : {"Option1", "ReadAsVCards"}) {
            auto* const option = window_->Find<QAbstractButton>(name);
            const QImage unset = Picture(*option);
            option->setChecked(true);
            QVERIFY2(Difference(Picture(*option), unset) >= kStretch, name);
        }
    }

    void SelectedTab() {
        window_->form->setFocus(); // so that no tab has it
        for (const Tab tab : {kSinglePair, kSets}) {
            // The line along the page, below the tab, ends beside the selected tab.
            const QRect place(Tabs()->mapTo(window_->form.get(), Tabs()->tabRect(tab).topLeft()),
                              Tabs()->tabRect(tab).size() + QSize(0, 2));
            window_->SelectTab(tab);
            const QImage selected = Picture(*window_->form, place);
            window_->SelectTab(tab == kSets ? kSinglePair : kSets);
            const QImage behind = Picture(*window_->form, place);
            QVERIFY(Difference(selected, behind) >= place.width());
        }
    }

    void Focus() {
        const auto shows = [this](QWidget& control) {
            window_->form->setFocus();
            const QImage without = Picture(control);
            control.setFocus(Qt::TabFocusReason);
            return Difference(Picture(control), without) >= control.height();
        };
        for (const char* const name : {"Option3", "ReadAsVCards", "ListView1", "Text1", "Text3",
                                       "PushButton2", "PushButton1", "PushButton14", "tabs"}) {
            QVERIFY2(shows(*window_->Find<QWidget>(name)), name);
        }
        QVERIFY(shows(*window_->CodePages()));
        window_->SelectTab(kSets);
        for (const char* const name : {"Combo1", "SetsTable", "tabs"}) {
            QVERIFY2(shows(*window_->Find<QWidget>(name)), name);
        }
    }

    void Letters() {
        const auto readable = [this](const char* name) {
            auto* const control = window_->Find<QWidget>(name);
            const QRect inside = control->rect().adjusted(kStretch, 3, -kStretch, -3);
            // On the right, a box may have a scroll bar or an arrow.
            return ContrastOfLetters(*control, inside.adjusted(0, 0, -inside.width() / 2, 0)) >=
                   kLeastOfLetters;
        };
        window_->form->setFocus();
        window_->Press("Option1"); // has a note
        for (const char* const name :
             {"Text1", "Text2", "OptionsNote", "PushButton1", "PushButton2", "Count", "tabs"}) {
            QVERIFY2(readable(name), name);
        }
        auto* const list = window_->Find<QTreeView>("ListView1")->viewport();
        QRect words(QPoint(), list->fontMetrics().size(0, QStringLiteral("files here")));
        words.moveCenter(list->rect().center());
        QVERIFY(ContrastOfLetters(*list, words) >= kLeastOfLetters);
        window_->SelectTab(kSets);
        QVERIFY(readable("Combo1") && readable("Combo2")); // "No sets"
        window_->AddSet(u"a::");
        auto* const sets = window_->Find<SetsTable>("SetsTable");
        const QRect cell = sets->visualRect(sets->model()->index(0, 2)); // "(empty)"
        QVERIFY(ContrastOfLetters(*sets->viewport(), cell.adjusted(1, 1, -1, -1)) >=
                kLeastOfLetters);

        for (const auto group : {QPalette::Active, QPalette::Inactive}) {
            const auto colour = [&](QPalette::ColorRole role) {
                return QApplication::palette().color(group, role);
            };
            for (const auto& [letters, ground] :
                 {std::pair{QPalette::PlaceholderText, QPalette::Base},
                  {QPalette::PlaceholderText, QPalette::Window},
                  {QPalette::HighlightedText, QPalette::Highlight}}) {
                QVERIFY(Contrast(colour(letters), colour(ground)) >= kLeastOfLetters);
            }
        }
    }

    void OnlyTheToolkitsOwnStyleIsReplaced() {
        const std::unique_ptr<QStyle> other(QStyleFactory::create(QStringLiteral("Windows")));
        QVERIFY(!OutlinedStyle::IsNeededFor(*other));
        QVERIFY(!OutlinedStyle::IsNeededFor(OutlinedStyle()));
        const QProxyStyle wrapped(new QProxyStyle(QStringLiteral("Fusion"))); // as desktops do
        QVERIFY(OutlinedStyle::IsNeededFor(wrapped));
    }

private:
    QTabBar* Tabs() const { return window_->Find<QTabWidget>("TabControl1")->tabBar(); }

    QPalette before_;
    std::unique_ptr<Window> window_;
};

std::unique_ptr<QObject> MakeLooksTest() {
    return std::make_unique<LooksTest>();
}

} // namespace vexmarrow::test

#include "LooksTest.moc"

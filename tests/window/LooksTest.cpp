// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/Colours.h"
#include "app/OutlinedStyle.h"
#include "app/SetsTable.h"

#include <QGroupBox>
#include <QProgressBar>
#include <QProxyStyle>
#include <QScrollBar>
#include <QSplitter>
#include <QStyleFactory>

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
    {"light", "#efefef", "#ffffff", "#efefef", "#000000", "#308cc6", "#ffffff"},
    {"bluish light", "#eff0f1", "#fcfcfc", "#fcfcfc", "#232627", "#3daee9", "#fcfcfc"},
    {"bluish dark", "#31363b", "#232629", "#31363b", "#eff0f1", "#3daee9", "#eff0f1"},
    {"grey dark", "#353535", "#2d2d2d", "#353535", "#eeeeec", "#15539e", "#ffffff"},
    {"black", "#000000", "#000000", "#000000", "#ffffff", "#1aebff", "#000000"},
    {"white", "#ffffff", "#ffffff", "#ffffff", "#000000", "#37006e", "#ffffff"},
};

/// The length of a stretch of a frame, in pixels. Half of it must be seen: curves are thinner.
constexpr int kStretch = 10;

QImage Picture(QWidget& widget, const QRect& place) {
    QApplication::processEvents();
    return widget.grab(place).toImage();
}
QImage Picture(QWidget& widget) {
    return Picture(widget, widget.rect());
}

/// The number of pixels by which two pictures of the same place differ with at least `contrast`.
int Difference(const QImage& one, const QImage& other, double contrast = kMinOutlineContrast) {
    int pixels = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            pixels += Contrast(one.pixelColor(x, y), other.pixelColor(x, y)) >= contrast;
        }
    }
    return pixels;
}

/// The number of pixels that have at least `contrast` with the commonest colour of the picture.
int Marks(const QImage& picture, double contrast) {
    std::map<QRgb, int> colours;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ++colours[picture.pixel(x, y)];
        }
    }
    const auto rarer = [](const auto& one, const auto& other) { return one.second < other.second; };
    QImage ground(picture.size(), QImage::Format_RGB32);
    ground.fill(std::max_element(colours.begin(), colours.end(), rarer)->first);
    return Difference(picture, ground, contrast);
}

/// Whether an edge is seen in a widget within the few pixels from `start` to the right.
bool HasEdge(QWidget& widget, const QPoint& start) {
    const QRect way(start - QPoint(0, kStretch / 2), QSize(8, kStretch));
    return Marks(Picture(widget, way), kMinOutlineContrast) >= kStretch / 2;
}
bool HasEdge(QWidget& widget, const QRect& place) {
    return HasEdge(widget, QPoint(place.left(), place.center().y()));
}

bool HasReadableLetters(QWidget& widget, const QRect& place) {
    return Marks(Picture(widget, place), kMinTextContrast) > 0;
}

} // namespace

/// What the window draws can be seen and read in every palette. Each test runs for each palette.
class LooksTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data() { AddRows(kPalettes); }
    void init() {
        QFETCH_GLOBAL(const qsizetype, row);
        const PaletteCase& colours = kPalettes[row];
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
        Tabs()->setObjectName(u"tabs"_s);
    }
    void cleanup() {
        window_.reset();
        QApplication::setPalette(before_);
        QApplication::processEvents();
    }

    void Frames() {
        auto* const start = window_->Find<QWidget>("PushButton1");
        for (const Tab tab : {kSinglePair, kSets}) {
            window_->SelectTab(tab);
            for (auto* const control : window_->form->findChildren<QWidget*>()) {
                const bool framed = control->focusPolicy() != Qt::NoFocus ||
                                    qobject_cast<QGroupBox*>(control) != nullptr;
                if (framed && control->isVisible() && control->isEnabled() && control != start) {
                    QVERIFY2(HasEdge(*control, control->rect()), qPrintable(control->objectName()));
                }
            }
            const QRect betweenTabs = Tabs()->tabRect(kSets).translated(-4, 0);
            QVERIFY(HasEdge(*Tabs(), betweenTabs));
        }
        // This button is a coloured face that differs from the window beside it.
        const QPoint right(start->rect().right() - 2, start->rect().center().y());
        QVERIFY(HasEdge(*start->parentWidget(), start->mapToParent(right)));
        QProgressBar progress;
        progress.setTextVisible(false);
        progress.resize(progress.sizeHint());
        QVERIFY(HasEdge(progress, progress.rect()));
        QScrollBar bar(Qt::Vertical);
        bar.resize(bar.sizeHint().width(), kStretch * kStretch);
        bar.setPageStep(kStretch * bar.maximum()); // the slider takes nearly all of the bar
        QVERIFY(HasEdge(bar, bar.rect()));
        auto* const grip = window_->form->findChild<QSplitter*>()->handle(1);
        QVERIFY(Marks(Picture(*grip), kMinOutlineContrast) >= kStretch);
        const QColor window = QApplication::palette().color(QPalette::Window);
        const bool full = window == Qt::black || window == Qt::white; // all contrast is needed
        QVERIFY(!full || OutlineColour(QApplication::palette()) == TextColourOn(window));
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
            // The line between the tabs and the page ends beside the selected tab.
            const QRect line = Tabs()->tabRect(tab).adjusted(0, Tabs()->height() - 3, 0, 2);
            const QRect place(Tabs()->mapTo(window_->form.get(), line.topLeft()), line.size());
            window_->SelectTab(tab);
            const QImage selected = Picture(*window_->form, place);
            window_->SelectTab(tab == kSets ? kSinglePair : kSets);
            QVERIFY(Difference(selected, Picture(*window_->form, place)) >= place.width() / 2);
        }
    }

    void Focus() {
        for (const Tab tab : {kSinglePair, kSets}) {
            window_->SelectTab(tab);
            for (QWidget* const control : TabStops(*window_->form)) {
                window_->form->setFocus();
                const QImage without = Picture(*control);
                control->setFocus(Qt::TabFocusReason);
                QVERIFY2(Difference(Picture(*control), without) >= control->height(),
                         qPrintable(control->objectName()));
            }
        }
    }

    void Letters() {
        window_->form->setFocus();
        window_->Press("Option1"); // has a note
        window_->AddSet(u"a::");
        const auto readable = [this](const char* name) {
            auto* const control = window_->Find<QWidget>(name);
            const QRect inside = control->rect().adjusted(kStretch, 3, -kStretch, -3);
            // On the right, a box may have a scroll bar or an arrow.
            return HasReadableLetters(*control, inside.adjusted(0, 0, -inside.width() / 2, 0));
        };
        for (const char* const name :
             {"Text1", "Text2", "OptionsNote", "PushButton1", "PushButton2", "Count", "tabs"}) {
            QVERIFY2(readable(name), name);
        }
        auto* const list = window_->Find<QTreeView>("ListView1")->viewport();
        QRect words(QPoint(), list->fontMetrics().size(0, u"files here"_s));
        words.moveCenter(list->rect().center());
        QVERIFY(HasReadableLetters(*list, words));
        window_->SelectTab(kSets);
        QVERIFY(readable("Combo1") && readable("Combo2")); // the number of sets
        auto* const sets = window_->Find<SetsTable>("SetsTable");
        const QRect cell = sets->visualRect(sets->model()->index(0, 2)); // "(empty)"
        QVERIFY(HasReadableLetters(*sets->viewport(), cell.adjusted(1, 1, -1, -1)));

        const QPalette used = QApplication::palette();
        for (const auto group : {QPalette::Active, QPalette::Inactive}) {
            for (const auto& [letters, ground] :
                 {std::pair{QPalette::PlaceholderText, QPalette::Window},
                  {QPalette::HighlightedText, QPalette::Highlight}}) {
                QVERIFY(Contrast(used.color(group, letters), used.color(group, ground)) >=
                        kMinTextContrast);
            }
        }
    }

    void OnlyTheToolkitsOwnStyleIsReplaced() {
        const std::unique_ptr<QStyle> other(QStyleFactory::create(u"Windows"_s));
        QVERIFY(!OutlinedStyle::IsNeededFor(*other));
        QVERIFY(!OutlinedStyle::IsNeededFor(OutlinedStyle()));
        const QProxyStyle wrapped(new QProxyStyle(u"Fusion"_s)); // as desktops do
        QVERIFY(OutlinedStyle::IsNeededFor(wrapped));
    }

private:
    QTabBar* Tabs() const { return window_->Find<QTabWidget>("TabControl1")->tabBar(); }

    QPalette before_;
    std::unique_ptr<Window> window_;
};

[[maybe_unused]] const bool kAdded = AddSuite<LooksTest>("LooksTest");

} // namespace vexmarrow::test

#include "LooksTest.moc"

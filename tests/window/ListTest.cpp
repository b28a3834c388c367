// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/Colours.h"
#include "app/ShownText.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyle>
#include <QTextDocumentFragment>
#include <QToolTip>

#include <climits>

namespace vexmarrow::test {
namespace {

struct MouseStep {
    QEvent::Type type;
    int row; // from 0 on; a row that the list does not have is below the others
};
constexpr QEvent::Type kPress = QEvent::MouseButtonPress;
constexpr QEvent::Type kRelease = QEvent::MouseButtonRelease;
constexpr QEvent::Type kTwice = QEvent::MouseButtonDblClick;
constexpr QEvent::Type kMove = QEvent::MouseMove;

struct LookCase {
    const char* name;
    const char* file;
    std::string bytes;
    int failing = 0; // statement whose failure is reported
};
const std::string kSkin = "QLabel { color: #123456 }";
const std::vector<LookCase> kLookCases{
    {"folder", "HAND-M.CUR/folder", ""},
    {"broken drag pointer", "drag.ico", "broken"},
    {"empty skin", "x/o.cjs", ""},
    {"skin", "x/o.cjs", kSkin},
    {"torn skin", "x/o.cjs", kSkin + "{ x", 1},
    {"skin with a NUL", "x/o.cjs", kSkin + std::string(1, '\0') + "{", 1},
    {"program as a skin", "x/o.cjs", "MZ\x90", 1},
    {"broken pointer", "HAND-M.CUR", "broken", 2},
    {"pointer without a picture", "HAND-M.CUR", {0, 0, 2, 0, 1, 0, 32, 32}, 2},
};

} // namespace

/// What the mouse does in the main window, and the files beside the program that change its looks.
class ListTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        folder_ = std::make_unique<TestFolder>();
        window_ = std::make_unique<Window>();
        window_->programFolder = folder_->Path();
    }
    void cleanup() {
        window_.reset();
        qApp->setStyleSheet({});
    }

    void Drops() {
        Open({});
        folder_->Write("in/a#b \xE9.vcf", "x");
        QMimeData files, text;
        const QByteArray uris = "file://" + QByteArray::fromStdString(folder_->Native("in"));
        files.setData(u"text/uri-list"_s, uris + "\r\nfile:///x\r\n");
        text.setText(u"file:///x"_s);
        QVERIFY(Drop(text, Qt::CopyAction) == 0 && Drop(files, Qt::MoveAction) == 0);
        QCOMPARE(Drop(files, Qt::CopyAction | Qt::MoveAction), Qt::CopyAction);
        QCOMPARE(Shown(), QString()); // the drop is over before its work begins
        // Asks about the extension, at the end.
        QTRY_VERIFY_WITH_TIMEOUT(!window_->prompts.boxes.empty(), kDeadline);
        QCOMPARE(Shown(), ToQString(folder_->Path("in/a#b ") + u"\uFFFD.vcf /x"));
        QCOMPARE(window_->Find<QLabel>("Progress")->text(), QString());
    }

    void ADropIsShownAtItsEnd() {
        Open({});
        for (const char* const name : {"in/1/a.vcf", "in/2/a.vcf", "in/3/a.vcf"}) {
            folder_->Write(name, "x");
        }
        QMimeData files;
        files.setData(u"text/uri-list"_s,
                      "file://" + QByteArray::fromStdString(folder_->Native("in")));
        const QSignalSpy shown(View()->model(), &QAbstractItemModel::rowsInserted);
        Drop(files, Qt::CopyAction);
        QTRY_COMPARE_WITH_TIMEOUT(window_->Rows(), 3, kDeadline);
        QCOMPARE(shown.size(), 1);
        QCOMPARE(window_->Find<QLabel>("Count")->text(), u"3 files"_s);
    }

    void RowsDraggedAbout() {
        Open({u"v", u"v", u"c", u"f", u"vc"});
        Mouse({{kPress, 9}, {kMove, 2}, {kRelease, 2}}); // from below the rows
        QCOMPARE(Shown(), u"v v c f vc"_s);
        Mouse({{kPress, 0}, {kRelease, 0}, {kMove, 3}}); // moved after the release
        QCOMPARE(Shown(), u"v v c f vc"_s);
        Mouse({{kPress, 0}, {kMove, 1}}); // over a row of the same text
        QCOMPARE(Shown(), u"v v c f vc"_s);
        Mouse({{kMove, 2}, {kMove, 3}, {kMove, 9}}); // on from there, and below the rows
        QCOMPARE(Shown(), u"c v f v vc"_s);
        Mouse({{kRelease, 9}, {kMove, 0}, {kTwice, 9}, {kRelease, 9}}); // released there
        QCOMPARE(Shown(), u"c v f v vc"_s);
        Mouse({{kPress, 4}, {kMove, 0}, {kRelease, 0}}); // far up at once
        QCOMPARE(Shown(), u"vc v f v c"_s);
        Mouse({{kPress, 2}, {kRelease, 2}, {kTwice, 2}, {kRelease, 2}}); // a double-click
        QCOMPARE(Shown(), u"vc v v c"_s);
    }

    void OnlyTheLeftButtonRemoves() {
        Open({u"v", u"c", u"f"});
        for (const auto& [button, rows] : {std::pair{Qt::RightButton, u"v c f"_s},
                                           {Qt::MiddleButton, u"v c f"_s},
                                           {Qt::LeftButton, u"v f"_s}}) {
            button_ = button;
            // The two clicks of the first double-click are on different rows.
            Mouse({{kPress, 0}, {kRelease, 0}, {kTwice, 1}, {kRelease, 1}});
            QCOMPARE(View()->currentIndex().row(), 1);
            Mouse({{kTwice, 1}, {kRelease, 1}});
            QCOMPARE(Shown(), rows);
        }
    }

    void DeleteRemovesTheSelectedRow() {
        Open({u"v", u"c", u"f"});
        const auto press = [this](Qt::KeyboardModifiers modifiers = {}, bool held = false) {
            QKeyEvent event(QEvent::KeyPress, Qt::Key_Delete, modifiers, {}, held);
            QApplication::sendEvent(View(), &event);
        };
        View()->selectionModel()->setCurrentIndex(Index(1), QItemSelectionModel::NoUpdate);
        press(); // no row is selected
        View()->setCurrentIndex(Index(1));
        press(Qt::NoModifier, true);
        press(Qt::ControlModifier);
        QCOMPARE(Shown(), u"v c f"_s);
        press();
        QCOMPARE(Shown(), u"v f"_s);
        press(Qt::KeypadModifier); // the row that came to this place is selected
        QCOMPARE(Shown(), u"v"_s);
        Once([] { return QGuiApplication::overrideCursor() != nullptr; },
             [&] { QTest::keyClick(View(), Qt::Key_Delete); });
        window_->prompts.texts = {u"x"};
        window_->Press("PushButton17");
        QCOMPARE(Shown(), u"v"_s);
    }

    void RowsAndTheEdgeOfTheColumn() {
        const std::u16string path(1'000'000, u'x');
        Open({path + u"/a", path + u"/b"});
        const QString before = QApplication::style()->name();
        for (const QString& style : {u"Fusion"_s, u"Windows"_s}) {
            QApplication::setStyle(style);
            QFont font = View()->font();
            font.setPointSize(font.pointSize() + 5);
            View()->setFont(font);
            QCOMPARE(View()->visualRect(Index(1)).height(), View()->fontMetrics().height() * 3 / 2);
            const auto row = [this](int n) {
                return View()->viewport()->grab(View()->visualRect(Index(n))).toImage();
            };
            QVERIFY(row(0) != row(1)); // they differ at their ends, which are shown
            const int edge = View()->columnWidth(0) - 1;
            for (QWidget* const part : {View()->viewport(), View()->header()->viewport()}) {
                const QImage image = part->grab().toImage();
                QCOMPARE(image.pixel(edge, image.height() - 2),
                         OutlineColour(View()->palette()).rgb());
            }
        }
        QApplication::setStyle(before);
    }

    void TipsOfRows() {
        constexpr std::size_t kLongest = 2'000; // characters of a path that a tip shows
        constexpr int kWidest = 700;            // pixels, to fit on a small screen
        const std::u16string deep(300, u'/'), word(kLongest - 10, u'x');
        const std::vector<std::u16string> paths{
            u"/a", u"/<b>a</b>  &amp;\"'/some of my cards.vcf", u"/\xDC12", word,
            deep,  std::u16string(5 * kLongest, u'x')};
        Open(paths);
        const auto tip = [this](const QPoint& at) {
            QToolTip::hideText();
            QHelpEvent help(QEvent::ToolTip, at, View()->viewport()->mapToGlobal(at));
            QApplication::sendEvent(View()->viewport(), &help);
            return QToolTip::text();
        };
        for (std::size_t i = 0; i < paths.size(); ++i) {
            const QString shown = tip(View()->visualRect(Index(static_cast<int>(i))).center());
            QVERIFY(Qt::mightBeRichText(shown));
            const QString text = QTextDocumentFragment::fromHtml(shown).toPlainText();
            const QStringList lines = text.split(u'\n');
            QCOMPARE(lines.join(QString()), ShownInOneLine(paths[i], kLongest));
            const QFontMetrics letters(QToolTip::font());
            for (const QWidget* const label : QApplication::topLevelWidgets()) {
                QVERIFY(!label->inherits("QTipLabel") || // the tip has no further lines
                        label->height() < (lines.size() + 1) * letters.lineSpacing());
            }
            for (const QString& line : lines) {
                QVERIFY(letters.horizontalAdvance(line) < kWidest);
            }
        }
        for (const QPoint& off : {QPoint(View()->columnWidth(0) + 9, 9),
                                  View()->visualRect(Index(5)).bottomLeft() + QPoint(9, 9)}) {
            QCOMPARE(tip(off).remove(u'\n'), View()->toolTip());
        }
    }

    void RowsOutOfSightAreNotUnderThePointer() {
        OpenMany();
        View()->scrollTo(Index(100), QAbstractItemView::PositionAtTop);
        const QString before = Shown();
        Mouse({{kPress, 102},
               {kMove, 99},
               {kMove, 199},
               {kRelease, 99}}); // over the header, and below
        QCOMPARE(Shown(), before);
    }

    void DraggingScrollsOutsideOfTheBand() {
        OpenMany();
        // Rows of pixels on the screen: nothing scrolls from 305 up to 364.
        for (const auto& [height, by] : {std::pair{304, -1}, {305, 0}, {364, 0}, {365, 1}}) {
            View()->scrollTo(Index(100), QAbstractItemView::PositionAtTop);
            const int before = View()->verticalScrollBar()->value();
            const int bottom = View()->viewport()->height() - 1;
            int last = View()->indexAt(QPoint(1, bottom)).row();
            if (View()->visualRect(Index(last)).bottom() > bottom) {
                --last; // the last row that is wholly in sight
            }
            height_ = height;
            if (by < 0) {
                Mouse({{kPress, 101}, {kMove, 101}, {kMove, 100}, {kRelease, 100}});
            } else {
                Mouse({{kPress, last - 1}, {kMove, last - 1}, {kMove, last}, {kRelease, last}});
            }
            QCOMPARE(View()->verticalScrollBar()->value() - before, by);
        }
    }

    void Pointers() {
        for (const QString& name : {u"/HAND-M.CUR"_s, u"/drag.ico"_s}) {
            QFile::copy(QStringLiteral(VEXMARROW_RESOURCES) + name,
                        ToQString(folder_->Path()) + name);
        }
        Open({u"/v", u"/c"});
        const std::string bytes = folder_->Read("HAND-M.CUR");
        const QPoint hot(bytes[10], bytes[12]);
        const auto over = [this](const char* name) {
            QEvent enter(QEvent::Enter);
            QApplication::sendEvent(window_->Find<QWidget>(name), &enter);
            return window_->form->cursor();
        };
        for (const char* const ground : {"Frame1", "Frame2", "Frame4", "Text3", "TabControl1"}) {
            QCOMPARE(over("PushButton7").shape(), Qt::BitmapCursor);
            QCOMPARE(over("PushButton14").hotSpot(), hot);
            QCOMPARE(over(ground).shape(), Qt::ArrowCursor);
        }
        Mouse({{kPress, 1}});
        QCOMPARE(View()->viewport()->cursor().shape(), Qt::BitmapCursor);
        Mouse({{kRelease, 1}});
        const auto busy = [] { return QGuiApplication::overrideCursor() != nullptr; };
        Once(busy, [&] {
            over("PushButton1");
            over("Frame1");
            Mouse({{kMove, 0}});
            QVERIFY(busy());
        });
        window_->prompts.texts = {u"V"};
        window_->Press("PushButton17");
        QVERIFY(!busy() && Shown() == u"/c"_s);
    }

    void Looks_data() { AddRows(kLookCases); }
    void Looks() {
        const LookCase& look = CurrentRow(kLookCases);
        folder_->Write(look.file, look.bytes);
        Open({u"v"});
        const QString at = u"in Zentavor2021/08/31.Form1.Form_Load at line %1"_s;
        QCOMPARE(reports_, look.failing == 0 ? QString() : at.arg(look.failing));
        const QPalette colours = window_->form->palette();
        const bool skin = std::string_view(look.file) == "x/o.cjs";
        QVERIFY(!skin || colours.window().color() == colours.button().color());
        const QColor colour = window_->Find<QLabel>("Label1")->palette().windowText().color();
        QCOMPARE(colour == QColor(0x12, 0x34, 0x56), look.bytes == kSkin);
        Mouse({{kPress, 0}});
        QCOMPARE(View()->viewport()->cursor().shape(), Qt::ArrowCursor);
    }

    void TextsTooLongToDraw() {
        Open({});
        window_->SelectTab(kSets);
        for (const std::size_t shift : {0U, 1U}) { // a cut falls between two pairs or within one
            std::u16string text(shift, u'a');
            while (text.size() < 100'000) {
                text += text.size() / 2 == 25'000 ? u"needle" : u"\U0001F600";
            }
            window_->AddFiles({text + u".vcf"});
            window_->AddSet(text + u"::" + text);
            window_->Find<QComboBox>("Combo1")->setCurrentIndex(0);
            for (QString shown : {Index(0).data().toString().chopped(4),
                                  window_->Find<QComboBox>("Combo1")->currentText(),
                                  window_->Find<QComboBox>("Combo2")->currentText()}) {
                QVERIFY(shown.size() > 900 && shown.size() <= PATH_MAX); // not too long to draw
                QCOMPARE(shown.count(u'\u2026'), 1);
                QVERIFY(!shown.contains(u'\uFFFD'));
                const QStringList ends = shown.split(u'\u2026');
                QVERIFY(ToQString(text).startsWith(ends[0]) && ToQString(text).endsWith(ends[1]));
            }
            window_->prompts.texts = {u"NEEDLE"}; // the part that is not shown is found
            window_->Press("PushButton17");
            QCOMPARE(window_->Rows(), 0);
            window_->pickers.saves = {folder_->Path(shift == 0 ? "even" : "odd")};
            window_->Press("PushButton12");
            QCOMPARE(folder_->Read(shift == 0 ? "even" : "odd").size(), text.size() * 2 + 4);
            window_->Press("PushButton4");
        }
    }

    void SamplesThatFail() {
        Open({});
        window_->SelectTab(kSets);
        window_->prompts.whenShown = [](const Box& box) {
            box.title.empty() ? throw std::runtime_error("no desktop") : void();
        };
        window_->Press("PushButton8");
        QVERIFY(window_->Boxes().endsWith(u"Form1.PushButton8_Click at line 1"_s));
        QCOMPARE(window_->Find<QTabWidget>("TabControl1")->currentIndex(), 0);
        QVERIFY(window_->Find<LinesEdit>("Text1")->Text() == u"a" &&
                window_->Find<LinesEdit>("Text2")->Text() == u"b");
    }

private:
    QTreeView* View() const { return window_->Find<QTreeView>("ListView1"); }
    QModelIndex Index(int row) const { return View()->model()->index(row, 0); }

    void Open(const std::vector<std::u16string>& files) {
        window_->Open();
        reports_ = window_->Boxes();
        window_->AddFiles(files);
    }
    void OpenMany() {
        std::vector<std::u16string> names;
        for (int i = 0; i < 200; ++i) {
            names.emplace_back(i % 2 == 0 ? u"v" : u"c");
        }
        Open(names);
    }
    QString Shown() const {
        QStringList rows;
        for (int row = 0; row < window_->Rows(); ++row) {
            rows << Index(row).data().toString();
        }
        return rows.join(u' ');
    }
    /// Sends the events to the list, each over a row.
    void Mouse(const std::vector<MouseStep>& steps) {
        for (const MouseStep& step : steps) {
            const QRect row = View()->visualRect(Index(step.row));
            const QPoint below(9, View()->viewport()->height() - 3); // where there is no such row
            const bool moves = step.type == QEvent::MouseMove;
            held_ = moves ? held_ : step.type != QEvent::MouseButtonRelease;
            QMouseEvent event(step.type, row.isValid() ? row.center() : below, QPointF(9, height_),
                              moves ? Qt::NoButton : button_, held_ ? button_ : Qt::NoButton,
                              Qt::NoModifier);
            QApplication::sendEvent(View()->viewport(), &event);
        }
    }
    Qt::DropAction Drop(const QMimeData& data, Qt::DropActions actions) const {
        QDragEnterEvent enter(QPoint(9, 9), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(View()->viewport(), &enter);
        QDropEvent drop(QPoint(9, 9), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(View()->viewport(), &drop);
        return enter.isAccepted() && drop.isAccepted() ? drop.dropAction() : Qt::IgnoreAction;
    }

    std::unique_ptr<TestFolder> folder_;
    std::unique_ptr<Window> window_;
    QString reports_; // of the start of the program
    Qt::MouseButton button_ = Qt::LeftButton;
    bool held_ = false;
    int height_ = 0; // of the pointer on the screen
};

[[maybe_unused]] const bool kAdded = AddSuite<ListTest>("ListTest");

} // namespace vexmarrow::test

#include "ListTest.moc"

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Suites.h"
#include "Window.h"
#include "app/Colours.h"
#include "app/LinesEdit.h"
#include "app/Strings.h"
#include "support/TestFolder.h"

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

namespace vexmarrow::test {

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
        files.setData(QStringLiteral("text/uri-list"), uris + "\r\nfile:///x\r\n");
        text.setText(QStringLiteral("file:///x"));
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
        files.setData(QStringLiteral("text/uri-list"),
                      "file://" + QByteArray::fromStdString(folder_->Native("in")));
        const QSignalSpy shown(View()->model(), &QAbstractItemModel::rowsInserted);
        Drop(files, Qt::CopyAction);
        QTRY_COMPARE_WITH_TIMEOUT(window_->Rows(), 3, kDeadline);
        QCOMPARE(shown.size(), 1);
        QCOMPARE(window_->Find<QLabel>("Count")->text(), QStringLiteral("3 files"));
    }

    void RowsDraggedAbout() {
        Open({u"v", u"v", u"c", u"f", u"vc"});
        for (const auto& [does, rows] :
             {std::pair{"p9 m2 r2", "v v c f vc"}, // there is no row 9, and none was held yet
              std::pair{"p0 r0 m3", "v v c f vc"}, std::pair{"p0 m1", "v v c f vc"},
              std::pair{"m2 m3 m9", "c v f v vc"}, std::pair{"r9 m0 d9 r9", "c v f v vc"},
              std::pair{"p4 m0 r0", "vc v f v c"}, std::pair{"p2 r2 d2 r2", "vc v v c"}}) {
            Mouse(does);
            QCOMPARE(Shown(), QString::fromLatin1(rows));
        }
    }

    void OnlyTheLeftButtonRemoves() {
        Open({u"v", u"c", u"f"});
        for (const auto& [button, rows] :
             {std::pair{Qt::RightButton, "v c f"}, std::pair{Qt::MiddleButton, "v c f"},
              std::pair{Qt::LeftButton, "v f"}}) {
            button_ = button;
            Mouse("p0 r0 d1 r1"); // on another row it is no double-click
            QCOMPARE(View()->currentIndex().row(), 1);
            Mouse("d1 r1");
            QCOMPARE(Shown(), QString::fromLatin1(rows));
        }
    }

    void DeleteRemovesTheSelectedRow() {
        using Case = std::tuple<int, const char*, Qt::KeyboardModifiers, bool, const char*>;
        Open({u"v", u"c", u"f"});
        View()->selectionModel()->setCurrentIndex(Index(1), QItemSelectionModel::NoUpdate);
        for (const auto& [select, what, modifiers, held, rows] :
             {Case{-1, "none selected", Qt::NoModifier, false, "v c f"},
              Case{1, "held", Qt::NoModifier, true, "v c f"},
              Case{1, "with another key", Qt::ControlModifier, false, "v c f"},
              Case{1, "pressed", Qt::NoModifier, false, "v f"},
              Case{-1, "again, on the row that came there", Qt::KeypadModifier, false, "v"}}) {
            if (select >= 0) {
                View()->setCurrentIndex(Index(select));
            }
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Delete, modifiers, QString(), held);
            QApplication::sendEvent(View(), &press);
            QVERIFY2(Shown() == QString::fromLatin1(rows), what);
        }
        Once([] { return QGuiApplication::overrideCursor() != nullptr; },
             [&] { QTest::keyClick(View(), Qt::Key_Delete); });
        window_->prompts.texts = {u"x"};
        window_->Press("PushButton17");
        QCOMPARE(Shown(), QStringLiteral("v"));
    }

    void WhatTheListShows() {
        const std::u16string path(1'000'000, u'x');
        Open({path + u"/a", path + u"/b"});
        const QString before = QApplication::style()->name();
        for (const QString& style : {QStringLiteral("Fusion"), QStringLiteral("Windows")}) {
            QApplication::setStyle(style);
            QFont font = View()->font();
            font.setPointSize(font.pointSize() + 5);
            View()->setFont(font);
            QCOMPARE(View()->visualRect(Index(1)).height(), View()->fontMetrics().height() * 3 / 2);
            const auto row = [this](int n) {
                return View()->viewport()->grab(View()->visualRect(Index(n))).toImage();
            };
            QVERIFY(row(0) != row(1)); // the ends are seen
            const int edge = View()->columnWidth(0) - 1;
            for (QWidget* const part : {View()->viewport(), View()->header()->viewport()}) {
                const QImage image = part->grab().toImage();
                QCOMPARE(image.pixel(edge, image.height() - 2),
                         OutlineColour(View()->palette()).rgb());
            }
        }
        QApplication::setStyle(before);
        const auto quietMarks = [this] {
            const QImage image = View()->viewport()->grab().toImage();
            const QRgb quiet = QuietColour(View()->palette()).rgb();
            int marks = 0;
            for (int x = 0; x < image.width(); ++x) {
                for (int y = 0; y < image.height(); ++y) {
                    marks += image.pixel(x, y) == quiet ? 1 : 0;
                }
            }
            return marks;
        };
        const int inRows = quietMarks();
        window_->Press("PushButton2");
        QVERIFY(quietMarks() > inRows + 9); // "Drag and drop files here."
    }

    void TipsOfRows() {
        const std::u16string deep(300, u'/'), word(1'990, u'x');
        const std::vector<std::u16string> paths{
            u"/a",      u"/<b>a</b>  &amp;\"'/some of my cards.vcf",
            u"/\xDC12", word,
            deep,       std::u16string(9'999, u'x')};
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
            QCOMPARE(lines.join(QString()), ShownInOneLine(paths[i], 2'000));
            const QFontMetrics letters(QToolTip::font());
            for (const QWidget* const label : QApplication::topLevelWidgets()) {
                QVERIFY(!label->inherits("QTipLabel") || // which adds no lines of its own
                        label->height() < (lines.size() + 1) * letters.lineSpacing());
            }
            for (const QString& line : lines) {
                QVERIFY(letters.horizontalAdvance(line) < 700);
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
        Mouse("p102 m99 m199 r99"); // on the header, and below the list
        QCOMPARE(Shown(), before);
    }

    void DraggingScrollsOutsideOfTheBand() {
        OpenMany();
        for (const auto& [height, by] : {std::pair{304, -1}, {305, 0}, {364, 0}, {365, 1}}) {
            View()->scrollTo(Index(100), QAbstractItemView::PositionAtTop);
            const int before = View()->verticalScrollBar()->value();
            const int bottom = View()->viewport()->height() - 1;
            int last = View()->indexAt(QPoint(1, bottom)).row();
            if (View()->visualRect(Index(last)).bottom() > bottom) {
                --last; // which is in sight as a whole
            }
            height_ = height;
            Mouse(by < 0 ? QStringLiteral("p101 m101 m100 r100")
                         : QStringLiteral("p%1 m%1 m%2 r%2").arg(last - 1).arg(last));
            QCOMPARE(View()->verticalScrollBar()->value() - before, by);
        }
    }

    void Pointers() {
        for (const QString& name : {QStringLiteral("/HAND-M.CUR"), QStringLiteral("/drag.ico")}) {
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
        Mouse("p1");
        QCOMPARE(View()->viewport()->cursor().shape(), Qt::BitmapCursor);
        Mouse("r1");
        const auto busy = [] { return QGuiApplication::overrideCursor() != nullptr; };
        Once(busy, [&] {
            over("PushButton1");
            over("Frame1");
            Mouse("m0");
            QVERIFY(busy());
        });
        window_->prompts.texts = {u"V"};
        window_->Press("PushButton17");
        QVERIFY(!busy() && Shown() == QStringLiteral("/c"));
    }

    void Looks() {
        using Case = std::tuple<const char*, std::string, int>; // file, bytes, line of the report
        const std::string skin = "QLabel { color: #123456 }";
        for (const auto& [name, bytes, line] :
             {Case{"HAND-M.CUR/folder", "", 0}, Case{"drag.ico", "broken", 0},
              Case{"x/o.cjs", "", 0}, Case{"x/o.cjs", skin, 0}, Case{"x/o.cjs", skin + "{ x", 1},
              Case{"x/o.cjs", skin + std::string(1, '\0') + "{", 1}, Case{"x/o.cjs", "MZ\x90", 1},
              Case{"HAND-M.CUR", "broken", 2}, Case{"HAND-M.CUR", {0, 0, 2, 0, 1, 0, 32, 32}, 2}}) {
            init();
            folder_->Write(name, bytes);
            Open({u"v"});
            const QString at = QStringLiteral("in Zentavor2021/08/31.Form1.Form_Load at line %1");
            QCOMPARE(reports_, line == 0 ? QString() : at.arg(line));
            const QPalette colours = window_->form->palette();
            QVERIFY(*name != 'x' || colours.window().color() == colours.button().color());
            const QColor colour = window_->Find<QLabel>("Label1")->palette().windowText().color();
            QCOMPARE(colour == QColor(0x12, 0x34, 0x56), bytes == skin);
            Mouse("p0");
            QCOMPARE(View()->viewport()->cursor().shape(), Qt::ArrowCursor);
            cleanup();
        }
    }

    void TextsTooLongToDraw() {
        Open({});
        window_->SelectTab(kSets);
        for (const std::size_t shift : {0U, 1U}) { // a cut between two pairs is one within a pair
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
                QVERIFY(shown.size() > 900 && shown.size() < 5'000);
                QCOMPARE(shown.count(u'\u2026'), 1);
                QVERIFY(!shown.contains(u'\uFFFD'));
                const QStringList ends = shown.split(u'\u2026');
                QVERIFY(ToQString(text).startsWith(ends[0]) && ToQString(text).endsWith(ends[1]));
            }
            window_->prompts.texts = {u"NEEDLE"}; // what is not shown is there
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
        QVERIFY(window_->Boxes().endsWith(QStringLiteral("Form1.PushButton8_Click at line 1")));
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
    /// Presses, moves, releases and double-clicks, each followed by the row it is over.
    void Mouse(const QString& does) {
        const QString letters = QStringLiteral("prdm"); // in the order of the event types
        static_assert(QEvent::MouseMove == QEvent::MouseButtonPress + 3);
        for (const QString& step : does.split(u' ')) {
            const QRect row = View()->visualRect(Index(step.mid(1).toInt()));
            const QPoint at =
                row.isValid() ? row.center() : QPoint(9, View()->viewport()->height() - 3);
            held_ = step[0] == u'm' ? held_ : step[0] != u'r';
            QMouseEvent event(QEvent::Type(QEvent::MouseButtonPress + letters.indexOf(step[0])), at,
                              QPointF(9, height_), step[0] == u'm' ? Qt::NoButton : button_,
                              held_ ? button_ : Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(View()->viewport(), &event);
        }
    }
    void Mouse(const char* does) { Mouse(QString::fromLatin1(does)); }
    Qt::DropAction Drop(const QMimeData& data, Qt::DropActions actions) const {
        QDragEnterEvent enter(QPoint(9, 9), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(View()->viewport(), &enter);
        QDropEvent drop(QPoint(9, 9), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(View()->viewport(), &drop);
        return enter.isAccepted() && drop.isAccepted() ? drop.dropAction() : Qt::IgnoreAction;
    }

    std::unique_ptr<TestFolder> folder_;
    std::unique_ptr<Window> window_;
    QString reports_;                         // from the start
    Qt::MouseButton button_ = Qt::LeftButton; // of the mouse
    bool held_ = false;
    int height_ = 0; // of the mouse on the screen
};

std::unique_ptr<QObject> MakeListTest() {
    return std::make_unique<ListTest>();
}

} // namespace vexmarrow::test

#include "ListTest.moc"

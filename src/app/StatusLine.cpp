// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/StatusLine.h"

#include "app/Boxes.h"
#include "app/CodePageChooser.h"
#include "app/MakeControls.h"
#include "app/Strings.h"

#include <QAccessibleWidget>
#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QStylePainter>

#include <algorithm>
#include <limits>
#include <utility>

namespace vexmarrow {
namespace {

int BarValue(std::size_t number) {
    return static_cast<int>(std::min<std::size_t>(number, std::numeric_limits<int>::max()));
}

/// A button that shows the beginning of its caption where there is no room for all of it.
class ShrinkingButton final : public QPushButton {
public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override {
        constexpr int kCharactersAround = 2;
        return QPushButton::sizeHint() +
               QSize(fontMetrics().averageCharWidth() * kCharactersAround, 0);
    }
    QSize minimumSizeHint() const override {
        return QPushButton::sizeHint() - QSize(CaptionWidth() * 2 / 3, 0);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QStylePainter painter(this);
        QStyleOptionButton option;
        initStyleOption(&option);
        const int room = width() - (QPushButton::sizeHint().width() - CaptionWidth());
        option.text =
            fontMetrics().elidedText(option.text, Qt::ElideRight, room, Qt::TextShowMnemonic);
        painter.drawControl(QStyle::CE_PushButton, option);
    }

private:
    int CaptionWidth() const { return fontMetrics().size(Qt::TextShowMnemonic, text()).width(); }
};

/// A button that is hardly wider than the mark of a menu, which opens above it. The toolkit's own
/// menu buttons keep assistive programs waiting until the menu is closed.
class MenuButton final : public QPushButton {
public:
    explicit MenuButton(QWidget* parent) : QPushButton(parent), menu_(new QMenu(this)) {
        [[maybe_unused]] static const bool installed =
            (QAccessible::installFactory(MakeAccessible), true);
        connect(this, &QPushButton::clicked, menu_, [this] {
            if (!IsBehindBox(*this)) {
                menu_->popup(mapToGlobal(QPoint(0, -menu_->sizeHint().height())));
            }
        });
    }

    QMenu* Menu() const { return menu_; }

    QAction* Add(const QString& name, const QString& caption) {
        QAction* const action = menu_->addAction(caption);
        action->setObjectName(name);
        return action;
    }

    QSize sizeHint() const override {
        constexpr int kCharacters = 4;
        return {fontMetrics().averageCharWidth() * kCharacters, QPushButton::sizeHint().height()};
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QStylePainter painter(this);
        QStyleOptionButton option;
        initStyleOption(&option);
        option.features |= QStyleOptionButton::HasMenu;
        painter.drawControl(QStyle::CE_PushButton, option);
    }

private:
    static QAccessibleInterface* MakeAccessible(const QString& className, QObject* object);

    QMenu* menu_;
};

/// What assistive programs see of it: a button with the menu below it.
class AccessibleMenuButton final : public QAccessibleWidget {
public:
    explicit AccessibleMenuButton(MenuButton* button)
        : QAccessibleWidget(button, QAccessible::Button), button_(button) {}

    int childCount() const override { return 1; }
    QAccessibleInterface* child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(button_->Menu()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return child != nullptr && child->object() == button_->Menu() ? 0 : -1;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction()) {
            button_->click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    MenuButton* button_;
};

QAccessibleInterface* MenuButton::MakeAccessible(const QString& /*className*/, QObject* object) {
    auto* const button = dynamic_cast<MenuButton*>(object);
    return button != nullptr ? new AccessibleMenuButton(button) : nullptr;
}

} // namespace

StatusLine::StatusLine(QWidget* parent)
    : QStatusBar(parent),
      UndoFrame(new QWidget(this)),
      UndoLastRun(new ShrinkingButton(UndoFrame)),
      CodePage(new CodePageChooser(this)),
      room_(new QWidget(this)),
      count_(new QLabel(room_)),
      progress_(new QLabel(room_)),
      missing_(new QLabel(room_)),
      bar_(new QProgressBar(room_)) {
    UseUtf8 = MakeButton(room_, u"UseUtf8");
    setSizeGripEnabled(false);
    count_->setObjectName(QStringLiteral("Count"));
    progress_->setObjectName(QStringLiteral("Progress"));
    progress_->setTextFormat(Qt::PlainText);
    missing_->setObjectName(QStringLiteral("Missing"));
    SetName(bar_, u"ProgressBar");
    bar_->setAccessibleName(QStringLiteral("Progress"));
    bar_->setTextVisible(false);
    room_->installEventFilter(this);

    SetName(UndoLastRun, u"UndoLastRun");
    UndoLastRun->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto* const menu = new MenuButton(UndoFrame);
    Forget = menu->Add(QStringLiteral("Forget"), QStringLiteral("&Forget"));
    KeepMissing =
        menu->Add(QStringLiteral("KeepMissing"), QStringLiteral("&Keep Old Text of Missing Files"));
    UndoMenu = menu;
    SetName(UndoMenu, u"UndoMenu");
    UndoMenu->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    for (QPushButton* const button : {UndoLastRun, UndoMenu}) {
        button->setAutoDefault(true); // Enter presses it
    }
    auto* const row = new QHBoxLayout(UndoFrame);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
    row->addWidget(UndoLastRun);
    row->addWidget(UndoMenu);

    addWidget(room_, 1);
    addPermanentWidget(UndoFrame);
    addPermanentWidget(MakeLabel(this, u"Label5", CodePage));
    addPermanentWidget(CodePage);
    SetName(CodePage, u"CodePage");
    // Assistive programs read in the order of the children.
    UndoFrame->raise();
    CodePage->raise();
    ShowUndo({});
    ClearProgress();
}

void StatusLine::ShowCounts(std::size_t files, std::size_t sets) {
    files_ = files;
    sets_ = sets;
    if (!showsProgress_) {
        ShowRest();
    }
}

void StatusLine::ShowUtf8Hint(bool shown) {
    if (std::exchange(hintsAtUtf8_, shown) != shown && !showsProgress_) {
        ShowRest();
    }
}

void StatusLine::ShowRest() {
    if (hintsAtUtf8_) {
        count_->setText(QStringLiteral("These files look like UTF-8"));
    } else {
        const QString files = CountOf(files_, u"file");
        count_->setText(sets_ == 0 ? files : files + QStringLiteral(", ") + CountOf(sets_, u"set"));
    }
    wanted_ = count_->sizeHint().width();
    if (hintsAtUtf8_) {
        wanted_ += Gap() + UseUtf8->sizeHint().width();
    }
    if (!missing_->accessibleName().isEmpty()) {
        wanted_ += 3 * Gap() + fontMetrics().horizontalAdvance(missing_->accessibleName());
    }
    Fit();
}

void StatusLine::ShowProgress(const Progress& progress) {
    const QLocale locale;
    const QString all =
        progress.total > 0 ? QStringLiteral(" of ") + locale.toString(progress.total) : QString();
    const auto textOf = [&](std::size_t done) {
        return ToQString(progress.item) + u' ' + locale.toString(done) + all;
    };
    progress_->setText(textOf(progress.done));
    // From 0 to 0 the bar shows that there is work, and not how far it is.
    bar_->setRange(0, BarValue(progress.total));
    bar_->setValue(BarValue(progress.done));
    if (!showsProgress_) {
        showsProgress_ = true;
        const std::size_t longest = std::max<std::size_t>(progress.total, 99'999);
        wanted_ =
            bar_->sizeHint().width() + Gap() + fontMetrics().horizontalAdvance(textOf(longest));
        Fit();
    }
}

void StatusLine::ClearProgress() {
    showsProgress_ = false;
    bar_->reset();
    progress_->clear();
    ShowRest();
}

void StatusLine::ShowUndo(const UndoOffer& offer) {
    UndoLastRun->setEnabled(offer.undo);
    UndoLastRun->setToolTip(offer.hint);
    Forget->setEnabled(offer.forget);
    KeepMissing->setEnabled(offer.keepMissing);
    KeepMissing->setVisible(!offer.missing.isEmpty());
    UndoMenu->setEnabled(offer.forget || offer.keepMissing);
    missing_->setAccessibleName(offer.missing); // what is shown of it may be less
    missing_->setToolTip(offer.missing);
    if (!showsProgress_) {
        ShowRest();
    }
}

QSize StatusLine::minimumSizeHint() const {
    return QStatusBar::minimumSizeHint() - QSize(room_->minimumWidth(), 0);
}

bool StatusLine::event(QEvent* event) {
    const bool result = QStatusBar::event(event);
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::StyleChange:
        if (!showsProgress_) {
            ShowRest();
        }
        break;
    case QEvent::Resize:
    case QEvent::LayoutRequest: // something in the line takes more room than before, or less
        Fit();
        break;
    default:
        break;
    }
    return result;
}

bool StatusLine::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        Arrange();
    }
    return QStatusBar::eventFilter(watched, event);
}

/// Gives the room what it wants, as far as the window is wide enough.
void StatusLine::Fit() {
    room_->setMinimumWidth(std::clamp(width() - minimumSizeHint().width(), 0, wanted_));
    layout()->activate();
    Arrange();
}

int StatusLine::Gap() const {
    return fontMetrics().averageCharWidth();
}

/// What does not fit into the room is left out, but for the text of the progress.
void StatusLine::Arrange() {
    int left = 0;
    const auto place = [&](QWidget* control, int width) {
        const bool fits = left + width <= room_->width();
        if (fits) {
            control->setGeometry(left, 0, width, room_->height());
            left += width + Gap();
        }
        control->setVisible(fits);
    };
    if (showsProgress_) {
        count_->hide();
        UseUtf8->hide();
        missing_->hide();
        if (wanted_ <= room_->width()) {
            place(bar_, bar_->sizeHint().width());
        } else {
            bar_->hide();
        }
        place(progress_, room_->width() - left);
    } else {
        bar_->hide();
        progress_->hide();
        const int button = hintsAtUtf8_ ? UseUtf8->sizeHint().width() : 0;
        const int most = std::max(room_->width() - button - Gap(), 0);
        place(count_, hintsAtUtf8_ ? std::min(count_->sizeHint().width(), most)
                                   : count_->sizeHint().width());
        if (hintsAtUtf8_) {
            place(UseUtf8, button);
        } else {
            UseUtf8->hide();
        }
        constexpr int kFewestCharacters = 12; // less could be taken for the number of files
        left += Gap();
        const int rest = room_->width() - left;
        const bool fits = rest >= Gap() * kFewestCharacters;
        missing_->setText(
            fontMetrics().elidedText(missing_->accessibleName(), Qt::ElideRight, rest));
        place(missing_, std::max(rest, 0));
        missing_->setVisible(fits && !missing_->text().isEmpty());
    }
}

} // namespace vexmarrow

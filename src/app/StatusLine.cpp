// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/StatusLine.h"

#include "app/CodePageChooser.h"
#include "app/MakeControls.h"
#include "app/MenuButton.h"
#include "app/ShownText.h"
#include "app/Strings.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>

#include <algorithm>
#include <limits>
#include <utility>

namespace vexmarrow {
namespace {

int BarValue(std::size_t number) {
    return static_cast<int>(std::min<std::size_t>(number, std::numeric_limits<int>::max()));
}

} // namespace

StatusLine::StatusLine(QWidget* parent)
    : QStatusBar(parent),
      UndoFrame(new QWidget(this)),
      UndoLastRun(MakeShrinkingButton(UndoFrame, u"UndoLastRun")),
      CodePage(MakeNamed<CodePageChooser>(this, u"CodePage")),
      room_(new QWidget(this)),
      count_(MakeNamed<QLabel>(room_, u"Count")),
      progress_(MakeNamed<QLabel>(room_, u"Progress")),
      missing_(MakeNamed<QLabel>(room_, u"Missing")),
      bar_(MakeNamed<QProgressBar>(room_, u"ProgressBar")) {
    UseUtf8 = MakeButton(room_, u"UseUtf8");
    setSizeGripEnabled(false);
    progress_->setTextFormat(Qt::PlainText);
    bar_->setAccessibleName(QStringLiteral("Progress"));
    bar_->setTextVisible(false);
    room_->installEventFilter(this);

    auto* const menu = MakeNamed<MenuButton>(UndoFrame, u"UndoMenu");
    Forget = menu->Add(QStringLiteral("Forget"), QStringLiteral("&Forget"));
    KeepMissing =
        menu->Add(QStringLiteral("KeepMissing"), QStringLiteral("&Keep Old Text of Missing Files"));
    UndoMenu = menu;
    UndoMenu->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    UndoMenu->setAutoDefault(true); // Enter presses it
    auto* const row = new QHBoxLayout(UndoFrame);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(1);
    row->addWidget(UndoLastRun);
    row->addWidget(UndoMenu);

    addWidget(room_, 1);
    addPermanentWidget(UndoFrame);
    addPermanentWidget(MakeLabel(this, u"Label5", CodePage));
    addPermanentWidget(CodePage);
    // Assistive programs read the children in their order.
    UndoFrame->raise();
    CodePage->raise();
    ShowUndo({});
    ClearProgress();
}

void StatusLine::ShowCounts(std::size_t files, std::size_t sets) {
    files_ = files;
    sets_ = sets;
    ShowRest();
}

void StatusLine::ShowUtf8Hint(bool shown) {
    if (std::exchange(hintsAtUtf8_, shown) != shown) {
        ShowRest();
    }
}

/// Shows the counts or the hint, and the notice about missing files, unless the progress is shown.
void StatusLine::ShowRest() {
    if (showsProgress_) {
        return;
    }
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
    // With the range 0 to 0, the bar shows only that there is work.
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
    missing_->setAccessibleName(offer.missing); // the visible text may be cut
    missing_->setToolTip(offer.missing);
    ShowRest();
}

QSize StatusLine::minimumSizeHint() const {
    return QStatusBar::minimumSizeHint() - QSize(room_->minimumWidth(), 0);
}

bool StatusLine::event(QEvent* event) {
    const bool result = QStatusBar::event(event);
    const QEvent::Type type = event->type();
    if (type == QEvent::FontChange || type == QEvent::StyleChange) {
        ShowRest();
    } else if (type == QEvent::Resize || type == QEvent::LayoutRequest) { // of a control
        Fit();
    }
    return result;
}

bool StatusLine::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        Arrange();
    }
    return QStatusBar::eventFilter(watched, event);
}

/// Makes the room as wide as its contents, as far as the window allows.
void StatusLine::Fit() {
    room_->setMinimumWidth(std::clamp(width() - minimumSizeHint().width(), 0, wanted_));
    layout()->activate();
    Arrange();
}

int StatusLine::Gap() const {
    return fontMetrics().averageCharWidth();
}

/// Places the contents of the room. Controls that do not fit are hidden, but the text of the
/// progress is only cut.
void StatusLine::Arrange() {
    int left = 0;
    const auto place = [&](QWidget* control, bool isShown, int width) {
        const bool fits = isShown && left + width <= room_->width();
        if (fits) {
            control->setGeometry(left, 0, width, room_->height());
            left += width + Gap();
        }
        control->setVisible(fits);
    };
    place(bar_, showsProgress_ && wanted_ <= room_->width(), bar_->sizeHint().width());
    place(progress_, showsProgress_, room_->width() - left);

    const bool hints = hintsAtUtf8_ && !showsProgress_;
    const int button = hints ? UseUtf8->sizeHint().width() : 0;
    const int count = count_->sizeHint().width();
    place(count_, !showsProgress_,
          hints ? std::clamp(room_->width() - button - Gap(), 0, count) : count);
    place(UseUtf8, hints, button);

    constexpr int kFewestCharacters = 12; // fewer could be mistaken for the number of files
    left += Gap();
    const int rest = room_->width() - left;
    const QString& notice = missing_->accessibleName();
    missing_->setText(fontMetrics().elidedText(notice, Qt::ElideRight, rest));
    place(missing_, !showsProgress_ && rest >= Gap() * kFewestCharacters && !notice.isEmpty(),
          rest);
}

} // namespace vexmarrow

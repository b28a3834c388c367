// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/StatusLine.h"

#include "app/CodePageChooser.h"
#include "app/Controls.h"
#include "app/Strings.h"

#include <QLabel>
#include <QLayout>
#include <QLocale>
#include <QProgressBar>

#include <algorithm>
#include <limits>

namespace vexmarrow {
namespace {

int BarValue(std::size_t number) {
    return static_cast<int>(std::min<std::size_t>(number, std::numeric_limits<int>::max()));
}

} // namespace

StatusLine::StatusLine(QWidget* parent)
    : QStatusBar(parent),
      Combo3(new CodePageChooser(this)),
      count_(new QLabel(this)),
      bar_(new QProgressBar(this)),
      place_(new QWidget(this)),
      progress_(new QLabel(place_)) {
    setSizeGripEnabled(false);
    count_->setObjectName(QStringLiteral("Count"));
    Name(bar_, u"ProgressBar", u"Progress");
    bar_->setTextVisible(false);
    bar_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    progress_->setObjectName(QStringLiteral("Progress"));
    progress_->setTextFormat(Qt::PlainText);
    addWidget(count_);
    addWidget(bar_);
    addWidget(place_, 1);
    addPermanentWidget(MakeLabel(this, u"Label5", u"Code page of unmar&ked files:", Combo3));
    addPermanentWidget(Combo3);
    Combo3->setObjectName(QStringLiteral("Combo3"));
    Combo3->raise(); // assistive programs read in the order of the children
    ClearProgress();
}

void StatusLine::ShowCount(std::size_t count) {
    files_ = count;
    if (place_->isHidden()) {
        ShowRest();
    }
}

void StatusLine::ShowRest() {
    count_->setText(files_ == 0   ? QStringLiteral("No files")
                    : files_ == 1 ? QStringLiteral("1 file")
                                  : QLocale().toString(files_) + QStringLiteral(" files"));
    count_->show();
}

void StatusLine::ShowProgress(const Progress& progress) {
    const QLocale locale;
    const QString all =
        progress.total > 0 ? QStringLiteral(" of ") + locale.toString(progress.total) : QString();
    const auto textOf = [&](std::size_t done) {
        return ToQString(progress.item) + u' ' + locale.toString(done) + all;
    };
    const QString text = textOf(progress.done);
    progress_->setText(text);
    // From 0 to 0 the bar shows that there is work, and not how far it is.
    bar_->setRange(0, BarValue(progress.total));
    bar_->setValue(BarValue(progress.done));
    if (place_->isHidden()) {
        count_->hide(); // a small window has no room for both
        bar_->show();
        const std::size_t longest = std::max<std::size_t>(progress.total, 99'999);
        // No more than fits, or the window would grow.
        place_->setMinimumWidth(
            std::min(fontMetrics().horizontalAdvance(textOf(longest)), width() / 3));
        place_->show();
        layout()->activate();
    }
    progress_->setGeometry(place_->rect());
}

void StatusLine::ClearProgress() {
    bar_->hide();
    place_->hide();
    bar_->reset();
    progress_->clear();
    ShowRest();
}

} // namespace vexmarrow

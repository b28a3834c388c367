// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Splash.h"

#include "app/MakeControls.h"
#include "app/Strings.h"
#include "app/ToolTips.h"
#include "base/Text.h"
#include "shell/Choices.h"
#include "shell/ProductTexts.h"
#include "shell/SettingsStore.h"
#include "textio/FileAttributes.h"
#include "textio/FolderListing.h"
#include "textio/PathChecks.h"
#include "textio/Paths.h"

#include <QCheckBox>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QPixmap>

#include <vector>

namespace vexmarrow {
namespace {

/// The first file that is neither hidden nor a system file; empty if there is none.
std::u16string FirstFile(SystemCalls& calls, const std::u16string& folder) {
    if (!IsFolder(calls, folder)) {
        return {};
    }
    const std::vector<std::u16string> names = ListFilesInFolder(calls, folder, u"*.*");
    for (std::size_t i = 1; i < names.size(); ++i) {
        if ((FileAttributes(calls, folder + names[i]) & (kHidden | kSystem)) == 0) {
            return names[i];
        }
    }
    return {};
}

} // namespace

Splash::Splash(SystemCalls& calls, SettingsStore& settings, const std::u16string& programFolder)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint),
      calls_(calls),
      settings_(settings),
      folder_(Concat(programFolder, kSeparatorText, u"Splash", kSeparatorText)),
      Image1(MakeNamed<QLabel>(this, u"Image1")),
      Check1(MakeNamed<QCheckBox>(this, u"Check1")),
      lines_{MakeLine(u"Line1"), MakeLine(u"Line2"), MakeLine(u"Line3"), MakeLine(u"Line4")} {
    setObjectName(QStringLiteral("Splash"));
    Image1->setAccessibleName(QStringLiteral("Tips"));
    SetCaption(Check1, u"&Hide this at next startup");
    Check1->setToolTip(QStringLiteral("Do not show these tips at the next start."));
    connect(Check1, &QCheckBox::toggled, this,
            [this](bool set) { settings_.SaveSetting(choices::kHideTips.key, set ? u"1" : u"0"); });
    ShowTipsInLines(*this);
}

QFrame* Splash::MakeLine(std::u16string_view name) {
    auto* const line = MakeNamed<QFrame>(this, name);
    line->setFrameShape(QFrame::Box);
    return line;
}

void Splash::SplashShow() {
    if (LoadChoice(settings_, choices::kHideTips) != 0) {
        return;
    }
    const std::u16string name = FirstFile(calls_, folder_);
    if (name.empty() || !IsExistingPath(calls_, folder_ + name)) {
        return;
    }
    const QPixmap picture(ToQString(folder_ + name));
    if (picture.isNull()) {
        return;
    }
    setWindowTitle(ToQString(kProductName));
    Image1->setPixmap(picture);
    const int strip = PixelsFromTwips(*this, 300); // for the check box
    const QSize size = picture.deviceIndependentSize().toSize() + QSize(0, strip);
    Image1->setGeometry(QRect(QPoint(0, 0), size));
    Image1->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    setFixedSize(size);
    Check1->adjustSize();
    Check1->move(PixelsFromTwips(*this, 120),
                 size.height() - Check1->height() - PixelsFromTwips(*this, 20));

    // The window clips the lines, which are longer than its edges.
    const int edge = qMax(1, PixelsFromTwips(*this, 10));
    const int past = PixelsFromTwips(*this, 10'000);
    lines_[0]->setGeometry(0, 0, 1, past);
    lines_[1]->setGeometry(0, 0, past, 1);
    lines_[2]->setGeometry(size.width() - edge, 0, 1, past);
    lines_[3]->setGeometry(0, size.height() - edge, past, 1);
    show();
}

void Splash::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel)) {
        close();
    }
}

void Splash::mousePressEvent(QMouseEvent* /*event*/) {
    close();
}

} // namespace vexmarrow

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

/// Lengths of the screen are in twips, 1440 to the inch.
int Pixels(const QWidget& widget, int twips) {
    constexpr int kTwipsPerInch = 1440;
    return (twips * widget.logicalDpiX() + kTwipsPerInch / 2) / kTwipsPerInch;
}

/// The first file that is neither hidden nor of the system; nothing when there is none.
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
      Image1(new QLabel(this)),
      Check1(new QCheckBox(this)),
      Line1(MakeLine("Line1")),
      Line2(MakeLine("Line2")),
      Line3(MakeLine("Line3")),
      Line4(MakeLine("Line4")) {
    setObjectName(QStringLiteral("Splash"));
    SetName(Image1, u"Image1");
    Image1->setAccessibleName(QStringLiteral("Tips"));
    SetName(Check1, u"Check1");
    SetCaption(Check1, u"&Hide this at next startup");
    Check1->setToolTip(QStringLiteral("Do not show these tips at the next start."));
    connect(Check1, &QCheckBox::toggled, this, &Splash::Check1_Click);
    ShowTipsInLines(*this);
}

QFrame* Splash::MakeLine(const char* name) {
    auto* const line = new QFrame(this);
    line->setObjectName(QString::fromLatin1(name));
    line->setFrameShape(QFrame::Box);
    line->setLineWidth(1);
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
    const int strip = Pixels(*this, 300); // under the picture, for the check box
    const QSize size = picture.deviceIndependentSize().toSize() + QSize(0, strip);
    Image1->setGeometry(QRect(QPoint(0, 0), size));
    Image1->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    setFixedSize(size);
    Check1->adjustSize();
    Check1->move(Pixels(*this, 120), size.height() - Check1->height() - Pixels(*this, 20));

    // The lines run past the window's edges, which clip them.
    const int edge = qMax(1, Pixels(*this, 10));
    const int past = Pixels(*this, 10'000);
    Line1->setGeometry(0, 0, 1, past);
    Line2->setGeometry(0, 0, past, 1);
    Line3->setGeometry(size.width() - edge, 0, 1, past);
    Line4->setGeometry(0, size.height() - edge, past, 1);
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

void Splash::Check1_Click() {
    settings_.SaveSetting(choices::kHideTips.key, Check1->isChecked() ? u"1" : u"0");
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/FileListPanel.h"

#include "app/Controls.h"
#include "app/FileListView.h"
#include "app/Note.h"
#include "app/Strings.h"

#include <QGridLayout>
#include <QPushButton>

#include <vector>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kHint =
    u"Drag and drop files here. Dou&ble-click item to remove it. Move | line to right and out of "
    u"window to reveal full names.";

} // namespace

FileListPanel::FileListPanel(FileList& list, QWidget* parent)
    : QWidget(parent),
      ListView1(new FileListView(list, this)),
      Buttons(new QWidget(this)),
      PushButton13(MakeLowButton(Buttons, u"PushButton13", u"&Add VCF File(s)")),
      PushButton3(MakeLowButton(Buttons, u"PushButton3", u"Add All VCF File(s) &In Folder")),
      PushButton9(MakeLowButton(Buttons, u"PushButton9", u"Load List &Of Files From File")),
      PushButton17(MakeLowButton(Buttons, u"PushButton17", u"Remove Filenames Contain. &X")),
      PushButton11(MakeLowButton(Buttons, u"PushButton11", u"Remove Filenames &Not Cont. X")),
      PushButton2(MakeLowButton(Buttons, u"PushButton2", u"Clear Lis&t")),
      PushButton8(MakeLowButton(Buttons, u"PushButton8", u"Load Sample/&Example Files")),
      PushButton5(MakeLowButton(Buttons, u"PushButton5", u"&Help")) {
    Name(ListView1, u"ListView1", u"File(s)");
    ListView1->setToolTip(ToQString(kHint).remove(u'&'));
    ListView1->setAccessibleDescription(ListView1->toolTip());

    auto* const hint = new WrappedLabel(this, u"Hint");
    hint->setText(ToQString(kHint));
    hint->setBuddy(ListView1);

    // Both in pixels, and less where the window is low.
    constexpr int kBetweenGroups = 10;
    constexpr int kBetweenButtons = 3;
    // What adds files, what takes them out again, something to try; and help, at the foot.
    auto* const column = new QVBoxLayout(Buttons);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(1);
    const auto addGap = [column](int height) {
        column->addItem(new QSpacerItem(0, height, QSizePolicy::Minimum, QSizePolicy::Maximum));
    };
    for (const std::vector<QPushButton*>& group :
         {std::vector{PushButton13, PushButton3, PushButton9},
          {PushButton17, PushButton11, PushButton2},
          {PushButton8}}) {
        for (QPushButton* const button : group) {
            column->addWidget(button);
            addGap(kBetweenButtons);
        }
        addGap(kBetweenGroups);
    }
    column->addStretch();
    column->addWidget(PushButton5);

    constexpr int kBelowHint = 4; // pixels
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(kBelowHint);
    grid->addWidget(hint, 0, 0, 1, 2);
    grid->addWidget(ListView1, 1, 0);
    grid->addWidget(Buttons, 1, 1);
    grid->setColumnStretch(0, 1);
    grid->setRowStretch(1, 1);
}

} // namespace vexmarrow

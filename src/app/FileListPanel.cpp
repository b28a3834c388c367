// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/FileListPanel.h"

#include "app/FileListView.h"
#include "app/MakeControls.h"
#include "app/WrappedControls.h"

#include <QGridLayout>
#include <QPushButton>

namespace vexmarrow {
FileListPanel::FileListPanel(FileList& list, ControlTable<Form1> controls, QWidget* parent)
    : QWidget(parent),
      ListView1(new FileListView(list, this)),
      Hint(new WrappedLabel(this, u"Hint")),
      Buttons(new QWidget(this)) {
    SetName(ListView1, u"ListView1");
    Hint->setBuddy(ListView1);

    // The gaps are in pixels, and smaller if the window is low.
    constexpr int kBetweenGroups = 10;
    constexpr int kBetweenButtons = 3;
    auto* const column = new QVBoxLayout(Buttons);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(1);
    const auto addGap = [column](int height) {
        column->addItem(new QSpacerItem(0, height, QSizePolicy::Minimum, QSizePolicy::Maximum));
    };
    for (const ControlGroup group :
         {ControlGroup::AddFiles, ControlGroup::RemoveFiles, ControlGroup::Samples}) {
        for (const ControlRow& button : RowsOf(controls, group)) {
            column->addWidget(MakeLowButton(Buttons, button.name));
            addGap(kBetweenButtons);
        }
        addGap(kBetweenGroups);
    }
    column->addStretch();
    for (const ControlRow& button : RowsOf(controls, ControlGroup::Help)) {
        column->addWidget(MakeLowButton(Buttons, button.name));
    }

    constexpr int kBelowHint = 4; // pixels
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(kBelowHint);
    grid->addWidget(Hint, 0, 0, 1, 2);
    grid->addWidget(ListView1, 1, 0);
    grid->addWidget(Buttons, 1, 1);
    grid->setColumnStretch(0, 1);
    grid->setRowStretch(1, 1);
}

} // namespace vexmarrow

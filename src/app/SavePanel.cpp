// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/SavePanel.h"

#include "app/ControlHabits.h"
#include "app/MakeControls.h"
#include "app/Note.h"
#include "app/StartButton.h"

#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionGroupBox>

#include <limits>

namespace vexmarrow {
namespace {

constexpr QMargins kAround(9, 6, 9, 6); // pixels
constexpr int kBetweenLines = 4;        // pixels

/// How far below its upper edge a group begins that has a title there, in pixels.
int HeightOfTitle(const QGroupBox& group) {
    QStyleOptionGroupBox option;
    option.initFrom(&group);
    option.text = group.title();
    option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
    const QRect title = group.style()->subControlRect(QStyle::CC_GroupBox, &option,
                                                      QStyle::SC_GroupBoxLabel, &group);
    return title.bottom() + 1;
}

} // namespace

SavePanel::SavePanel(QWidget* parent)
    : QWidget(parent),
      Frame2(new QGroupBox(this)),
      Option5(MakeOption(Frame2, u"Option5")),
      Option4(MakeOption(Frame2, u"Option4")),
      Frame4(new QWidget(Frame2)),
      Text3(new QLineEdit(Frame4)),
      PushButton14(MakeSmallButton(Frame4, u"PushButton14")),
      ResultsNote(new Note(Frame2, u"ResultsNote", Frame2)),
      PushButton1(new StartButton(this)),
      grid_(new QGridLayout(this)) {
    SetName(Frame2, u"Frame2");
    SetName(Frame4, u"Frame4");
    Frame4->setAccessibleName(QStringLiteral("Output folder"));
    SetName(Text3, u"Text3");
    SetName(PushButton1, u"PushButton1");
    PushButton1->setAutoDefault(true);
    PushButton1->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
    Text3->setMaxLength(std::numeric_limits<int>::max());

    auto* const folder = new QHBoxLayout(Frame4);
    folder->setContentsMargins(0, 0, 0, 0);
    folder->addWidget(Text3, 1);
    folder->addWidget(PushButton14);

    auto* const second = new QHBoxLayout;
    second->addWidget(Option4);
    second->addWidget(Frame4, 1);
    auto* const lines = new QVBoxLayout(Frame2);
    lines->setContentsMargins(kAround);
    lines->setSpacing(kBetweenLines);
    lines->addWidget(Option5);
    lines->addLayout(second);
    lines->addWidget(ResultsNote);
    MakeOneStop({Option5, Option4});

    grid_->setContentsMargins(0, 0, 0, 0);
    grid_->setVerticalSpacing(0);
    grid_->addWidget(Frame2, 0, 0, 2, 1);
    grid_->addWidget(PushButton1, 1, 1);
    grid_->setColumnStretch(0, 1);
    grid_->setRowStretch(1, 1);
}

void SavePanel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        Measure();
    }
    QWidget::changeEvent(event);
}

/// The button begins where the frame beside it does.
void SavePanel::Measure() {
    constexpr int kCharacters = 16;
    Text3->setMinimumWidth(fontMetrics().averageCharWidth() * kCharacters);
    grid_->setRowMinimumHeight(0, HeightOfTitle(*Frame2));
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/SavePanel.h"

#include "app/ControlBehaviour.h"
#include "app/MakeControls.h"
#include "app/Note.h"
#include "app/OutlinedStyle.h"
#include "app/StartButton.h"

#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionGroupBox>

namespace vexmarrow {
namespace {

constexpr QMargins kAround(9, 6, 9, 6); // pixels
constexpr int kBetweenLines = 4;        // pixels

int TopOfFrame(const QGroupBox& group) {
    QStyleOptionGroupBox option;
    option.initFrom(&group);
    option.text = group.title();
    option.subControls = QStyle::SC_GroupBoxFrame | QStyle::SC_GroupBoxLabel;
    return TopOfGroupFrame(*group.style(), option, &group);
}

} // namespace

SavePanel::SavePanel(QWidget* parent)
    : QWidget(parent),
      Frame2(MakeNamed<QGroupBox>(this, u"Frame2")),
      Option5(MakeNamed<QRadioButton>(Frame2, u"Option5")),
      Option4(MakeNamed<QRadioButton>(Frame2, u"Option4")),
      Frame4(MakeNamed<QWidget>(Frame2, u"Frame4")),
      Text3(MakeLineEdit(Frame4, u"Text3")),
      PushButton14(MakeSmallButton(Frame4, u"PushButton14")),
      ResultsNote(new Note(Frame2, u"ResultsNote", Frame2)),
      PushButton1(MakeNamed<StartButton>(this, u"PushButton1")),
      grid_(new QGridLayout(this)) {
    Frame4->setAccessibleName(QStringLiteral("Output folder"));
    PushButton1->setAutoDefault(true);
    PushButton1->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);

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

/// Among other sizes, makes the start button begin at the height of the frame beside it.
void SavePanel::Measure() {
    constexpr int kCharacters = 16;
    Text3->setMinimumWidth(fontMetrics().averageCharWidth() * kCharacters);
    grid_->setRowMinimumHeight(0, TopOfFrame(*Frame2));
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/SavePanel.h"

#include "app/Controls.h"

#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include <limits>

namespace vexmarrow {
namespace {

constexpr int kDarker = 140; // per cent, as QColor::darker takes it

} // namespace

SavePanel::SavePanel(QWidget* parent)
    : QWidget(parent),
      Frame2(new QGroupBox(QStringLiteral("Save Option"), this)),
      Option5(MakeOption(Frame2, u"Option5", u"Save results in folder of original file")),
      Option4(MakeOption(Frame2, u"Option4", u"Save results to this folder:")),
      Frame4(new QWidget(Frame2)),
      Text3(new QLineEdit(Frame4)),
      PushButton14(MakeButton(Frame4, u"PushButton14", u"...")),
      PushButton1(MakeButton(this, u"PushButton1", u"Start Replacing")) {
    Name(Frame2, u"Frame2", u"Save Option");
    Name(Frame4, u"Frame4", u"Output folder");
    Name(Text3, u"Text3", u"Save results to this folder:");
    Text3->setMaxLength(std::numeric_limits<int>::max());
    Text3->setMinimumWidth(Text3->fontMetrics().averageCharWidth() * 24);
    PushButton14->setAccessibleName(QStringLiteral("Browse for output folder"));
    PushButton14->setToolTip(PushButton14->accessibleName());
    PushButton14->setFixedWidth(PushButton14->fontMetrics().averageCharWidth() * 7);

    auto* const folder = new QHBoxLayout(Frame4);
    folder->setContentsMargins(0, 0, 0, 0);
    folder->addWidget(Text3, 1);
    folder->addWidget(PushButton14);

    auto* const second = new QHBoxLayout;
    second->addWidget(Option4);
    second->addWidget(Frame4, 1);
    auto* const lines = new QVBoxLayout(Frame2);
    lines->addWidget(Option5);
    lines->addLayout(second);

    const QFontMetrics metrics = PushButton1->fontMetrics();
    PushButton1->setMinimumSize(metrics.averageCharWidth() * 30, metrics.lineSpacing() * 4);
    PushButton1->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    ColourStartButton();

    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(Frame2, 1);
    row->addWidget(PushButton1, 0, Qt::AlignBottom);
}

void SavePanel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        ColourStartButton();
    }
    QWidget::changeEvent(event);
}

void SavePanel::ColourStartButton() {
    QPalette colours = palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        // Styles draw a button somewhat lighter than its colour.
        const QColor face = colours.color(group, QPalette::Highlight).darker(kDarker);
        const bool dark = face.lightnessF() < 0.6F;
        colours.setColor(group, QPalette::Button, face);
        colours.setColor(group, QPalette::ButtonText, dark ? Qt::white : Qt::black);
    }
    PushButton1->setPalette(colours);
}

} // namespace vexmarrow

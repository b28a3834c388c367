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

#include <cmath>
#include <limits>

namespace vexmarrow {
namespace {

constexpr double kBright = 0.4; // in luminance: a colour for black letters

double Luminance(const QColor& colour) {
    const auto light = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * light(colour.redF()) + 0.7152 * light(colour.greenF()) +
           0.0722 * light(colour.blueF());
}

/// The colour of a button, made from that of selections, on which white letters are good to read.
QColor FaceForWhite(QColor face) {
    constexpr int kLighter = 130; // per cent: styles draw a button somewhat lighter than its colour
    constexpr int kStep = 105;
    constexpr double kReadable = 0.18; // white has 4.5 times its contrast
    while (Luminance(face.lighter(kLighter)) > kReadable) {
        face = face.darker(kStep);
    }
    return face;
}

} // namespace

SavePanel::SavePanel(QWidget* parent)
    : QWidget(parent),
      Frame2(new QGroupBox(QStringLiteral("Save O&ption"), this)),
      Option5(MakeOption(Frame2, u"Option5", u"Save results in folder of original file")),
      Option4(MakeOption(Frame2, u"Option4", u"Save results to this folder:")),
      Frame4(new QWidget(Frame2)),
      Text3(new QLineEdit(Frame4)),
      PushButton14(MakeSmallButton(Frame4, u"PushButton14", u"...", u"Browse for output folder")),
      PushButton1(MakeButton(this, u"PushButton1", u"&Start Replacing")) {
    Name(Frame2, u"Frame2", u"Save Option");
    Name(Frame4, u"Frame4", u"Output folder");
    Name(Text3, u"Text3", u"Save results to this folder:");
    Text3->setMaxLength(std::numeric_limits<int>::max());

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

    MakeOneStop({Option5, Option4});
    PushButton1->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    Measure();
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
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        Measure();
    }
    QWidget::changeEvent(event);
}

void SavePanel::Measure() {
    const QFontMetrics metrics = fontMetrics();
    Text3->setMinimumWidth(metrics.averageCharWidth() * 16);
    PushButton1->setMinimumSize(metrics.averageCharWidth() * 26, metrics.lineSpacing() * 4);
}

void SavePanel::ColourStartButton() {
    QPalette colours = palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        const QColor selection = colours.color(group, QPalette::Highlight);
        const bool bright = Luminance(selection) > kBright;
        colours.setColor(group, QPalette::Button, bright ? selection : FaceForWhite(selection));
        colours.setColor(group, QPalette::ButtonText, bright ? Qt::black : Qt::white);
    }
    PushButton1->setPalette(colours);
}

} // namespace vexmarrow

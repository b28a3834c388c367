// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Colours.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace vexmarrow {
namespace {

// More than the minimum, because a thin curve is drawn mixed with its background.
constexpr double kOutlineContrast = 4;

double Luminance(const QColor& colour) {
    const auto light = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * light(colour.redF()) + 0.7152 * light(colour.greenF()) +
           0.0722 * light(colour.blueF());
}

QColor Mixed(const QColor& from, const QColor& to, double share) {
    const auto part = [share](float one, float other) {
        return static_cast<float>(one + (other - one) * share);
    };
    return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()),
                            part(from.blueF(), to.blueF()));
}

bool HasHighestContrast(const QPalette& palette) {
    constexpr double kHighest = 20;
    return Contrast(palette.color(QPalette::Window), palette.color(QPalette::WindowText)) >=
           kHighest;
}

/// Makes a colour visible on windows, lists and buttons.
QColor VisibleEverywhere(const QColor& wanted, const QPalette& palette, double least) {
    constexpr int kDrawnButton = 150; // per cent: buttons are drawn lighter than their colour
    return VisibleColour(wanted, palette.color(QPalette::WindowText),
                         {palette.color(QPalette::Window), palette.color(QPalette::Base),
                          palette.color(QPalette::Button).lighter(kDrawnButton)},
                         least);
}

} // namespace

double Contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor VisibleColour(const QColor& wanted, const QColor& text,
                     std::initializer_list<QColor> backgrounds, double least) {
    constexpr int kSteps = 20;
    for (int step = 0; step < kSteps; ++step) {
        const QColor colour = Mixed(wanted, text, static_cast<double>(step) / kSteps);
        if (std::all_of(backgrounds.begin(), backgrounds.end(),
                        [&](const QColor& each) { return Contrast(colour, each) >= least; })) {
            return colour;
        }
    }
    return text;
}

QColor TextColourOn(const QColor& background) {
    const bool white = Contrast(Qt::white, background) >= Contrast(Qt::black, background);
    return white ? Qt::white : Qt::black;
}

QColor OutlineColour(const QPalette& palette) {
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    return HasHighestContrast(palette)
               ? text
               : VisibleColour(window, text, {window, palette.color(QPalette::Base)},
                               kOutlineContrast);
}

QColor FocusColour(const QPalette& palette) {
    return VisibleEverywhere(palette.color(QPalette::Highlight), palette, kOutlineContrast);
}

QColor QuietColour(const QPalette& palette) {
    constexpr double kAim = 5; // more than the minimum: groups are drawn darker than the window
    return VisibleEverywhere(palette.color(QPalette::Window), palette,
                             HasHighestContrast(palette) ? 2 * kAim : kAim);
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/Colours.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace vexmarrow {
namespace {

constexpr double kAimOfOutlines = 4; // more than the least: a thin curve is mixed with its ground

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

/// Whether it is a palette for people who need the most contrast that there is.
bool IsOfHighestContrast(const QPalette& palette) {
    constexpr double kHighest = 20;
    return Contrast(palette.color(QPalette::Window), palette.color(QPalette::WindowText)) >=
           kHighest;
}

/// Seen on windows, lists and buttons, which are drawn lighter than their colour.
QColor SeenEverywhere(const QColor& wanted, const QPalette& palette, double least) {
    constexpr int kAsDrawn = 150; // per cent
    return Visible(wanted, palette.color(QPalette::WindowText),
                   {palette.color(QPalette::Window), palette.color(QPalette::Base),
                    palette.color(QPalette::Button).lighter(kAsDrawn)},
                   least);
}

} // namespace

double Contrast(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({Luminance(one), Luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor Visible(const QColor& wanted, const QColor& letters, std::initializer_list<QColor> grounds,
               double least) {
    constexpr int kSteps = 20;
    for (int step = 0; step < kSteps; ++step) {
        const QColor colour = Mixed(wanted, letters, static_cast<double>(step) / kSteps);
        if (std::all_of(grounds.begin(), grounds.end(),
                        [&](const QColor& ground) { return Contrast(colour, ground) >= least; })) {
            return colour;
        }
    }
    return letters;
}

QColor LettersOn(const QColor& ground) {
    return Contrast(Qt::white, ground) >= Contrast(Qt::black, ground) ? Qt::white : Qt::black;
}

QColor OutlineColour(const QPalette& palette) {
    const QColor ground = palette.color(QPalette::Window);
    const QColor letters = palette.color(QPalette::WindowText);
    return IsOfHighestContrast(palette)
               ? letters
               : Visible(ground, letters, {ground, palette.color(QPalette::Base)}, kAimOfOutlines);
}

QColor FocusColour(const QPalette& palette) {
    return SeenEverywhere(palette.color(QPalette::Highlight), palette, kAimOfOutlines);
}

QColor QuietColour(const QPalette& palette) {
    constexpr double kAim = 5; // more than the least: groups are drawn darker than the window
    return SeenEverywhere(palette.color(QPalette::Window), palette,
                          IsOfHighestContrast(palette) ? 2 * kAim : kAim);
}

} // namespace vexmarrow

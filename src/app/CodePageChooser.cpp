// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/CodePageChooser.h"

#include "app/ControlBehaviour.h"
#include "app/Strings.h"
#include "textio/CodePage.h"

#include <QSignalBlocker>
#include <QStylePainter>

namespace vexmarrow {

CodePageChooser::CodePageChooser(QWidget* parent) : QComboBox(parent) {
    for (const ChoosableCodePage& page : ChoosableCodePages()) {
        const QString name = ToQString(page.name);
        addItem(QStringLiteral("%1%2 (%3)")
                    .arg(name[0].toUpper())
                    .arg(name.mid(1), ToQString(page.languages)),
                name);
    }
    setFrame(false);
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    setMaxVisibleItems(count() + 1);
    ObeySelection(this);
    KeepWheelOut(this);
    const auto tell = [this](int index) { Q_EMIT Chosen(itemData(index).toString()); };
    connect(this, &QComboBox::currentIndexChanged, this, tell);
    connect(this, &QComboBox::activated, this, tell); // also for the page that is shown already
}

void CodePageChooser::ShowPage(std::u16string_view name) {
    const QSignalBlocker blocker(this);
    const QString page = ToQString(name);
    if (findData(page) < 0) {
        insertItem(0, page, page);
    }
    setCurrentIndex(findData(page));
}

QSize CodePageChooser::minimumSizeHint() const {
    constexpr int kCharacters = 12;
    return {fontMetrics().averageCharWidth() * kCharacters, QComboBox::minimumSizeHint().height()};
}

void CodePageChooser::paintEvent(QPaintEvent* /*event*/) {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    const QRect place =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    option.currentText =
        fontMetrics().elidedText(option.currentText, Qt::ElideRight, place.width());
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

} // namespace vexmarrow

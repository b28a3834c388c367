// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/MessageBox.h"

#include "app/Boxes.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>

#include <algorithm>

namespace vexmarrow {
namespace {

/// A longer text is shown by a widget that lays out only the lines in sight; a label of thousands
/// of lines takes seconds to paint.
constexpr qsizetype kLinesOfLabel = 60;
constexpr qsizetype kCharactersOfLabel = 10'000;
constexpr int kWidestLineInCharacters = 90;
constexpr int kLinesInSight = 30;
constexpr int kNarrowestInCharacters = 40; // the title is to be read, too
constexpr double kShareOfScreen = 0.75;

QAccessibleInterface* MakeAlert(const QString& className, QObject* object) {
    if (className == QLatin1String(MessageBox::staticMetaObject.className())) {
        return new QAccessibleWidget(qobject_cast<QWidget*>(object), QAccessible::AlertMessage);
    }
    return nullptr;
}

/// What closing the box by other means than its buttons is.
Answer AnswerOfClosing(BoxStyle style) {
    switch (style) {
    case BoxStyle::OrLater:
        return Answer::Later;
    case BoxStyle::YesNo:
    case BoxStyle::Question:
        return Answer::No;
    default:
        return Answer::Ok;
    }
}

QIcon IconOf(BoxStyle style, const QStyle& look) {
    switch (style) {
    case BoxStyle::Critical:
        return look.standardIcon(QStyle::SP_MessageBoxCritical);
    case BoxStyle::OrLater:
    case BoxStyle::Question:
        return look.standardIcon(QStyle::SP_MessageBoxQuestion);
    case BoxStyle::Exclamation:
        return look.standardIcon(QStyle::SP_MessageBoxWarning);
    case BoxStyle::Information:
    case BoxStyle::YesNo:
        break;
    }
    return {};
}

} // namespace

MessageBox::MessageBox(QWidget* owner, const QString& title, const QString& text, BoxStyle style)
    : QDialog(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                         Qt::WindowCloseButtonHint),
      answer_(AnswerOfClosing(style)) {
    [[maybe_unused]] static const bool installed = (QAccessible::installFactory(MakeAlert), true);
    setWindowTitle(title);
    setAccessibleName(title);
    setObjectName(QStringLiteral("MessageBox"));

    auto* const grid = new QGridLayout(this);
    const QIcon icon = IconOf(style, *this->style());
    if (!icon.isNull()) {
        auto* const picture = new QLabel(this);
        const int size = this->style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
        picture->setPixmap(icon.pixmap(QSize(size, size), devicePixelRatio()));
        grid->addWidget(picture, 0, 0, Qt::AlignTop);
        grid->setHorizontalSpacing(size / 3);
    }
    grid->addWidget(MakeText(text), 0, icon.isNull() ? 0 : 1, 1, icon.isNull() ? 2 : 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(0, 1);
    grid->setColumnMinimumWidth(1, fontMetrics().averageCharWidth() * kNarrowestInCharacters);

    auto* const buttons = new QDialogButtonBox(this);
    const auto add = [&](QDialogButtonBox::StandardButton which, const QString& caption,
                         Answer answer) {
        QPushButton* const button = buttons->addButton(which);
        button->setText(caption);
        button->setAccessibleName(caption.mid(1));
        connect(button, &QPushButton::clicked, this, [this, answer] {
            answer_ = answer;
            accept();
        });
        return button;
    };
    if (answer_ != Answer::Ok) {
        QPushButton* const yes = add(QDialogButtonBox::Yes, QStringLiteral("&Yes"), Answer::Yes);
        add(QDialogButtonBox::No, QStringLiteral("&No"), Answer::No);
        if (answer_ == Answer::Later) {
            add(QDialogButtonBox::Cancel, QStringLiteral("&Later"), Answer::Later);
        }
        yes->setDefault(true);
        yes->setFocus();
    } else {
        QPushButton* const ok = add(QDialogButtonBox::Ok, QStringLiteral("&OK"), Answer::Ok);
        ok->setDefault(true);
        ok->setFocus();
    }
    grid->addWidget(buttons, 1, 0, 1, 2);
    grid->setVerticalSpacing(grid->verticalSpacing() * 2);
}

QWidget* MessageBox::MakeText(const QString& text) {
    const QSize most = screen()->availableSize() * kShareOfScreen;
    const QFontMetrics metrics = fontMetrics();
    const int widest = std::min(most.width(), metrics.averageCharWidth() * kWidestLineInCharacters);
    if (text.count(u'\n') >= kLinesOfLabel || text.size() >= kCharactersOfLabel) {
        return MakeScrollingText(text, {widest, metrics.lineSpacing() * kLinesInSight});
    }
    auto* const label = new QLabel(this);
    label->setTextFormat(Qt::PlainText); // a path with "<" is no markup
    label->setText(text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    QSize size = label->sizeHint();
    if (size.width() > widest) {
        label->setWordWrap(true);
        // Long paths have no place to wrap at: those make the label wider than asked for.
        size = QSize(std::max(widest, label->minimumSizeHint().width()), 0);
        size.setHeight(label->heightForWidth(size.width()));
    }
    if (size.width() > most.width() || size.height() > most.height()) {
        delete label;
        return MakeScrollingText(text, size);
    }
    label->setMinimumSize(size);
    return label;
}

QWidget* MessageBox::MakeScrollingText(const QString& text, const QSize& size) {
    auto* const edit = new QPlainTextEdit(text, this);
    edit->setReadOnly(true);
    // With a cursor that tells whether the keys go there.
    edit->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    edit->setTabChangesFocus(true);
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit->setAccessibleName(windowTitle());
    const int around = edit->verticalScrollBar()->sizeHint().width() + 2 * edit->frameWidth();
    edit->setMinimumSize(
        (size + QSize(around, around)).boundedTo(screen()->availableSize() * kShareOfScreen));
    return edit;
}

Answer MessageBox::Ask() {
    WaitFor(*this);
    return answer_;
}

void MessageBox::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

} // namespace vexmarrow

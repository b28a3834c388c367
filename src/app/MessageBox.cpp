// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/MessageBox.h"

#include "app/MakeControls.h"
#include "app/WaitingBoxes.h"

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
#include <QVBoxLayout>

#include <algorithm>

namespace vexmarrow {
namespace {

// A text with more lines or characters is not shown in a label, which takes seconds to paint a text
// of thousands of lines, but in a widget that lays out only the visible lines.
constexpr qsizetype kLinesOfLabel = 60;
constexpr qsizetype kCharactersOfLabel = 10'000;
constexpr int kWidestLineInCharacters = 90;
constexpr int kLinesInSight = 30;
constexpr int kFewestLinesInSight = 4;
constexpr int kNarrowestInCharacters = 40; // enough to read the title
constexpr double kShareOfScreen = 0.75;

QAccessibleInterface* MakeAlert(const QString& className, QObject* object) {
    if (className == QLatin1String(MessageBox::staticMetaObject.className())) {
        return new QAccessibleWidget(qobject_cast<QWidget*>(object), QAccessible::AlertMessage);
    }
    return nullptr;
}

Answer AnswerOfClosing(BoxStyle style) {
    const bool asks = style == BoxStyle::YesNo || style == BoxStyle::Question;
    return style == BoxStyle::OrLater ? Answer::Later : asks ? Answer::No : Answer::Ok;
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
    default:
        return {};
    }
}

bool IsForLabel(const QString& text) {
    return text.count(u'\n') < kLinesOfLabel && text.size() < kCharactersOfLabel;
}

/// A text cut at blank lines: its longest paragraph, and the text before and after it.
struct Paragraphs {
    QString before;
    QString longest;
    QString after;
};

Paragraphs CutAtLongest(const QString& text) {
    const QString gap = QStringLiteral("\n\n");
    qsizetype begin = 0;
    qsizetype end = 0;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype found = text.indexOf(gap, at);
        const qsizetype next = found < 0 ? text.size() : found;
        if (next - at > end - begin) {
            begin = at;
            end = next;
        }
        at = next + gap.size();
    }
    // Blank lines at the beginning and the end of the text are no paragraphs.
    begin = QStringView(text).left(begin).trimmed().isEmpty() ? 0 : begin;
    end = QStringView(text).mid(end).trimmed().isEmpty() ? text.size() : end;
    return {text.left(begin).chopped(begin > 0 ? gap.size() : 0), text.mid(begin, end - begin),
            text.mid(end + gap.size())};
}

/// A label that is large enough for a whole text, in lines of about the width `widest`. It is wider
/// if a long path cannot be wrapped.
QLabel* MakeWholeLabel(const QString& text, int widest, QWidget* parent) {
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText); // a path with "<" is not markup
    label->setText(text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    QSize size = label->sizeHint();
    if (size.width() > widest) {
        label->setWordWrap(true);
        size.setWidth(std::max(widest, label->minimumSizeHint().width()));
        size.setHeight(label->heightForWidth(size.width()));
    }
    label->setMinimumSize(size);
    return label;
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
    grid->addLayout(MakeText(text), 0, icon.isNull() ? 0 : 1, 1, icon.isNull() ? 2 : 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(0, 1);
    grid->setColumnMinimumWidth(
        1,
        std::min(fontMetrics().averageCharWidth() * kNarrowestInCharacters, LargestText().width()));

    auto* const buttons = new QDialogButtonBox(this); // in the order of the desktop
    const auto add = [&](QDialogButtonBox::ButtonRole role, std::u16string_view caption,
                         Answer answer) {
        QPushButton* const button = MakeButton(buttons, caption.substr(1), caption);
        buttons->addButton(button, role);
        connect(button, &QPushButton::clicked, this, [this, answer] {
            answer_ = answer;
            accept();
        });
        return button;
    };
    QPushButton* first = nullptr;
    if (answer_ == Answer::Ok) {
        first = add(QDialogButtonBox::AcceptRole, u"&OK", Answer::Ok);
    } else {
        first = add(QDialogButtonBox::YesRole, u"&Yes", Answer::Yes);
        add(QDialogButtonBox::NoRole, u"&No", Answer::No);
        if (answer_ == Answer::Later) {
            add(QDialogButtonBox::RejectRole, u"&Later", Answer::Later);
        }
    }
    first->setDefault(true);
    first->setFocus();
    MakeEquallyWide(buttons->findChildren<QPushButton*>());
    grid->addWidget(buttons, 1, 0, 1, 2);
    grid->setVerticalSpacing(grid->verticalSpacing() * 2);
    resize(sizeHint()); // the toolkit would make a short box higher
}

QSize MessageBox::LargestText() const {
    return screen()->availableSize() * kShareOfScreen;
}

QLayout* MessageBox::MakeText(const QString& text) {
    const QSize most = LargestText();
    const QFontMetrics metrics = fontMetrics();
    const int widest = std::min(most.width(), metrics.averageCharWidth() * kWidestLineInCharacters);
    auto* const column = new QVBoxLayout;
    column->setSpacing(metrics.lineSpacing() / 2);
    if (IsForLabel(text)) {
        QLabel* const label = MakeWholeLabel(text, widest, this);
        if (label->minimumSize().boundedTo(most) == label->minimumSize()) {
            column->addWidget(label);
            return column;
        }
        delete label;
    }

    // The text before the longest paragraph and the question after it must stay visible.
    const Paragraphs whole{{}, text, {}};
    Paragraphs parts = CutAtLongest(text);
    parts = IsForLabel(parts.before) && IsForLabel(parts.after) ? parts : whole;
    QLabel* const before = MakeWholeLabel(parts.before, widest, this);
    QPlainTextEdit* const scrolling = MakeScrollingText();
    QLabel* const after = MakeWholeLabel(parts.after, widest, this);
    int room = most.height();
    bool fit = true;
    for (const QLabel* const label : {before, after}) {
        room -= label->text().isEmpty() ? 0 : label->minimumHeight() + column->spacing();
        fit = fit && label->minimumWidth() <= most.width();
    }
    if (!fit || room < metrics.lineSpacing() * kFewestLinesInSight) {
        before->clear();
        after->clear();
        parts = whole;
        room = most.height();
    }
    scrolling->setPlainText(parts.longest);
    const int around =
        scrolling->verticalScrollBar()->sizeHint().width() + 2 * scrolling->frameWidth();
    const int lines = std::min(scrolling->blockCount(), kLinesInSight);
    scrolling->setMinimumSize(QSize(widest + around, lines * metrics.lineSpacing() + around)
                                  .boundedTo({most.width(), room}));
    column->addWidget(before);
    column->addWidget(scrolling, 1);
    column->addWidget(after);
    before->setHidden(before->text().isEmpty());
    after->setHidden(after->text().isEmpty());
    return column;
}

QPlainTextEdit* MessageBox::MakeScrollingText() {
    auto* const edit = new QPlainTextEdit(this);
    edit->setReadOnly(true);
    // The cursor shows that the box has the focus.
    edit->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    edit->setTabChangesFocus(true);
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit->setAccessibleName(windowTitle());
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

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/MessageBox.h"

#include "app/Boxes.h"
#include "app/MakeControls.h"

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

/// A longer text is shown by a widget that lays out only the lines in sight; a label of thousands
/// of lines takes seconds to paint.
constexpr qsizetype kLinesOfLabel = 60;
constexpr qsizetype kCharactersOfLabel = 10'000;
constexpr int kWidestLineInCharacters = 90;
constexpr int kLinesInSight = 30;
constexpr int kFewestLinesInSight = 4;
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

bool IsForLabel(const QString& text) {
    return text.count(u'\n') < kLinesOfLabel && text.size() < kCharactersOfLabel;
}

/// A text cut at blank lines: its longest paragraph, and what stands before and after that.
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
    // Blank lines around all of it are no paragraphs.
    begin = QStringView(text).left(begin).trimmed().isEmpty() ? 0 : begin;
    end = QStringView(text).mid(end).trimmed().isEmpty() ? text.size() : end;
    return {text.left(begin).chopped(begin > 0 ? gap.size() : 0), text.mid(begin, end - begin),
            text.mid(end + gap.size())};
}

/// A label of the size that shows all of a text, in lines of about the width `widest`. Long paths
/// have no place to wrap at: those make it wider.
QLabel* MakeWholeLabel(const QString& text, int widest, QWidget* parent) {
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText); // a path with "<" is no markup
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
        1, std::min(fontMetrics().averageCharWidth() * kNarrowestInCharacters, Most().width()));

    auto* const buttons = new QDialogButtonBox(this); // which has them in the order of the desktop
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
    resize(sizeHint()); // or the toolkit would make a short one higher
}

QSize MessageBox::Most() const {
    return screen()->availableSize() * kShareOfScreen;
}

QLayout* MessageBox::MakeText(const QString& text) {
    const QSize most = Most();
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

    // What the longest paragraph is about, and the question after it, stay in sight.
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
    // With a cursor that tells whether the keys go there.
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

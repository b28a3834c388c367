// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/ToolTips.h"

#include "app/Strings.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QTabWidget>
#include <QToolTip>
#include <QWidget>

#include <array>
#include <string_view>

namespace vexmarrow {
namespace {

struct Tip {
    std::u16string_view window;
    std::u16string_view control;
    std::u16string_view text;
    int tab = 0; // of a control that has tabs
};

constexpr std::array kTips{
    // The list of files
    Tip{u"Form1", u"PushButton13", u"Choose contact files and add them to the list."},
    Tip{u"Form1", u"PushButton3",
        u"Choose a folder and add the .vcf files in it and in the folders below it, but for hidden "
        u"files, names that begin with ~ and folders with unusual characters in their names."},
    Tip{u"Form1", u"PushButton9",
        u"Choose text files that name one file a line, and add all files that they name."},
    Tip{u"Form1", u"PushButton17",
        u"Type a text and take every file whose path contains it out of the list; the files "
        u"themselves stay where they are."},
    Tip{u"Form1", u"PushButton11",
        u"Type a text and take every file whose path does not contain it out of the list; the "
        u"files themselves stay where they are."},
    Tip{u"Form1", u"PushButton2",
        u"Take all files out of the list; the files themselves stay where they are."},
    Tip{u"Form1", u"PushButton8",
        u"Add a few example cards to the list and fill in a text to find, to try things on."},
    Tip{u"Form1", u"PushButton5", u"Show what this program is not for and how to reach us."},

    // What to find
    Tip{u"Form1", u"TabControl1", u"Find one text, or one text a line."},
    Tip{u"Form1", u"TabControl1", u"Find a list of texts, one after the other.", 1},
    Tip{u"Form1", u"Text1",
        u"What to find, with capital and small letters told apart; when fields and values are "
        u"searched, or files are read as vCards, each line is a text of its own."},
    Tip{u"Form1", u"Text2",
        u"What to put in its place; each line belongs to the same line of the texts to find."},
    Tip{u"Form1", u"Combo1", u"The texts to find, in their order; choose one to remove its set."},
    Tip{u"Form1", u"Combo2",
        u"The texts to put in their places, in their order; choose one to remove its set."},
    Tip{u"Form1", u"SetsTable",
        u"All sets, in the order in which they are applied; choose one to remove it."},
    Tip{u"Form1", u"PushButton7", u"Type a text to find and what to put in its place as a set."},
    Tip{u"Form1", u"PushButton6", u"Take the chosen set out of the list of sets."},
    Tip{u"Form1", u"PushButton10", u"Add sets from a text file, one a line."},
    Tip{u"Form1", u"PushButton4", u"Take all sets out of the list of sets."},
    Tip{u"Form1", u"PushButton12", u"Save all sets to a text file, one a line."},
    Tip{u"Form1", u"Option1",
        u"Change only what stands before the first colon of each line; what follows a second "
        u"colon is left out of the result unless files are read as vCards."},
    Tip{u"Form1", u"Option2",
        u"Change only what follows the first colon of each line; what follows a second colon is "
        u"left out of the result unless files are read as vCards."},
    Tip{u"Form1", u"Option3", u"Change the text of each file as a whole."},
    Tip{u"Form1", u"ReadAsVCards",
        u"Find texts in contact cards also where a line is wrapped or its letters are written as "
        u"codes, keep what follows a second colon, and change no photo, key or sound; all that is "
        u"not found stays as it is, to the byte."},

    // Where results go
    Tip{u"Form1", u"Option5", u"Put each result in the place of the file that it is made from."},
    Tip{u"Form1", u"Option4",
        u"Put all results into one folder, under the names of their files, and leave the files "
        u"themselves as they are."},
    Tip{u"Form1", u"Text3", u"The folder for the results; it has to be there already."},
    Tip{u"Form1", u"PushButton14", u"Choose the folder for the results."},
    Tip{u"Form1", u"PushButton1",
        u"Find and replace in all files of the list, from the first to the last."},
    Tip{u"Form1", u"UndoMenu",
        u"Forget the old texts that are kept of earlier runs, and what else can be done about "
        u"them."},
    Tip{u"Form1", u"Combo3",
        u"The encoding of text files that do not say themselves which one they have; a choice "
        u"counts from the next file that is read, and for the next time, too."},

    Tip{u"Form2", u"Text1", u"The text file with the sets, one a line."},
    Tip{u"Form2", u"PushButton16", u"Choose the text file."},
    Tip{u"Form2", u"Text2", u"What stands between the two texts of a set."},
    Tip{u"Form2", u"PushButton1", u"Add the sets of the file to the list of sets."},
    Tip{u"Form2", u"PushButton2", u"Close this window and load nothing."},
    Tip{u"Form2", u"PushButton3", u"Show what such a file looks like and which separator it has."},

    Tip{u"InputBox", u"Answer", u"Type the text here."},
    Tip{u"InputBox", u"OK", u"Go on with this text."},
    Tip{u"InputBox", u"Cancel", u"Close this window and change nothing."},

    Tip{u"Splash", u"Check1", u"Leave this picture out when the program starts the next time."},
};

/// Breaks a text into lines that are not too long to read; the toolkit does that for markup only.
QString InTipLines(const QString& text) {
    constexpr int kCharacters = 60;
    const QFontMetrics metrics(QToolTip::font());
    return InLines(text, metrics, metrics.averageCharWidth() * kCharacters);
}

/// Shows the tool tips of the controls that it watches, the list's own hint among them.
class TipsInLines final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const control = qobject_cast<QWidget*>(watched);
        const auto* const help =
            event->type() == QEvent::ToolTip ? dynamic_cast<const QHelpEvent*>(event) : nullptr;
        if (control == nullptr || help == nullptr || control->toolTip().isEmpty()) {
            return QObject::eventFilter(watched, event);
        }
        QToolTip::showText(help->globalPos(), InTipLines(control->toolTip()), control);
        return true;
    }
};

} // namespace

QString TipOf(std::u16string_view text) {
    constexpr std::size_t kCharacters = 2'000; // they fit on a small screen
    return QStringLiteral("<div style=\"white-space: pre\">") +
           InTipLines(ShownInOneLine(text, kCharacters)).toHtmlEscaped() + QStringLiteral("</div>");
}

void SetToolTips(QWidget& window) {
    auto* const inLines = new TipsInLines(&window);
    for (QWidget* const control : window.findChildren<QWidget*>()) {
        control->installEventFilter(inLines);
    }
    for (const Tip& tip : kTips) {
        if (ToQString(tip.window) != window.objectName()) {
            continue;
        }
        auto* const control = window.findChild<QWidget*>(ToQString(tip.control));
        if (auto* const tabs = qobject_cast<QTabWidget*>(control)) {
            tabs->setTabToolTip(tip.tab, ToQString(tip.text));
        } else {
            control->setToolTip(ToQString(tip.text));
        }
    }
}

} // namespace vexmarrow

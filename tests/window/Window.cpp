// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "Window.h"

#include "app/LinesEdit.h"
#include "app/Strings.h"

#include <QTimer>

namespace vexmarrow::test {

void Window::Open() {
    form = std::make_unique<Form1>(Services{textio, writer, ansi, prompts, pickers, settings,
                                            fileManager, eventLoop, programFolder,
                                            u"/home/somebody/Desktop/"});
    form->Form_Load();
    form->show();
}

void Window::SetText1(std::u16string_view text) const {
    Find<LinesEdit>("Text1")->SetText(text);
}

void Window::SetText2(std::u16string_view text) const {
    Find<LinesEdit>("Text2")->SetText(text);
}

void Window::SetText3(const std::u16string& text) const {
    Find<QLineEdit>("Text3")->setText(ToQString(text));
}

void Window::AddFiles(const std::vector<std::u16string>& paths) {
    for (const std::u16string& path : paths) {
        pickers.files.push_back({path});
        Press("PushButton13");
    }
}

void Window::AddSet(const std::u16string& set) {
    prompts.texts.push_back(set);
    Press("PushButton7");
}

QString Window::Boxes() {
    QStringList summaries;
    for (const std::string& summary : prompts.TakeSummaries()) {
        summaries << QString::fromStdString(summary);
    }
    return summaries.join(u'|');
}

void Once(std::function<bool()> due, std::function<void()> action) {
    auto* const timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, timer,
                     [timer, due = std::move(due), action = std::move(action)] {
                         if (due()) {
                             timer->stop();
                             timer->deleteLater();
                             action();
                         }
                     });
    timer->start(0);
}

} // namespace vexmarrow::test

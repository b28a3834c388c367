// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/Pickers.h"

#include <QPointer>
#include <QString>
#include <QWidget>

class QFileDialog;

namespace vexmarrow {

class QtEventLoop;

/// The desktop's own file dialogs. The open and save dialogs share one folder, the last one used in
/// this sitting, and begin in the home folder. Where a folder is gone, they open at the nearest
/// around it that is still there.
class QtPickers final : public Pickers {
public:
    explicit QtPickers(const QtEventLoop& eventLoop) : eventLoop_(eventLoop) {}

    /// The window over which dialogs appear.
    void SetOwner(QWidget* owner) { owner_ = owner; }

    std::vector<std::u16string> OpenFiles(const FileDialogRequest& request) override;
    std::u16string SaveFile(const FileDialogRequest& request) override;
    std::u16string BrowseForFolder(std::u16string_view title,
                                   std::u16string_view startFolder) override;

private:
    QStringList Choose(QFileDialog& dialog, const FileDialogRequest& request);
    void Run(QFileDialog& dialog) const;

    const QtEventLoop& eventLoop_;
    QPointer<QWidget> owner_;
    QString folder_; // of the last file chosen; empty before
};

/// The chosen files as Pickers::OpenFiles hands them over. Dialogs that can choose from several
/// folders at once give names relative to the folder that all files share.
std::vector<std::u16string> PartsOfChoice(const QStringList& chosen);

/// Qt's name filters for a filter text: the captions stay as they are.
QStringList NameFilters(std::u16string_view filter);

} // namespace vexmarrow

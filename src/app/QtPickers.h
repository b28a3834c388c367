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

/// The desktop's own file dialogs. The dialogs for opening and saving begin in the folder that the
/// user has last chosen in one of them since the program started, at first in the home folder. If
/// a folder no longer exists, a dialog begins in the nearest folder around it that does.
class QtPickers final : public Pickers {
public:
    explicit QtPickers(const QtEventLoop& eventLoop) : eventLoop_(eventLoop) {}

    /// Sets the window over which dialogs appear.
    void SetOwner(QWidget* owner) { owner_ = owner; }

    std::vector<std::u16string> OpenFiles(const FileDialogRequest& request) override;
    std::u16string SaveFile(const FileDialogRequest& request) override;
    std::u16string BrowseForFolder(std::u16string_view title,
                                   std::u16string_view startFolder) override;

private:
    QStringList Choose(QFileDialog& dialog, const FileDialogRequest& request);
    bool Run(QFileDialog& dialog) const;

    const QtEventLoop& eventLoop_;
    QPointer<QWidget> owner_;
    QString folder_; // of the last file that was chosen; empty at first
};

/// The chosen files as Pickers::OpenFiles returns them. If a dialog has chosen files from several
/// folders, the names are relative to the folder that all files share.
std::vector<std::u16string> PartsOfChoice(const QStringList& chosen);

/// Converts a filter of a FileDialogRequest to Qt's name filters. The captions stay the same.
QStringList NameFilters(std::u16string_view filter);

} // namespace vexmarrow

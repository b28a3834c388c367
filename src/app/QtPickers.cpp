// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/QtPickers.h"

#include "app/NormalPointer.h"
#include "app/QtEventLoop.h"
#include "app/Strings.h"
#include "app/WaitingBoxes.h"
#include "base/Text.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>

namespace vexmarrow {
namespace {

/// `folder` or, if it does not exist, the nearest folder around it that does. Returns the home
/// folder if `folder` is not a full path.
QString NearestFolder(QString folder) {
    if (!folder.startsWith(u'/')) {
        folder = QDir::homePath();
    }
    while (!QFileInfo(folder).isDir() && folder != u"/") {
        folder.truncate(qMax(1, folder.lastIndexOf(u'/')));
    }
    return folder;
}

} // namespace

std::vector<std::u16string> PartsOfChoice(const QStringList& chosen) {
    // A dialog of the desktop may offer places that are not files on this machine.
    const QStringList files = chosen.filter(QRegularExpression(QStringLiteral("^/")));
    std::vector<std::u16string> parts;
    if (files.size() > 1) {
        QString folder = files.first();
        for (const QString& file : files) {
            while (!file.startsWith(folder + u'/')) {
                folder.truncate(folder.lastIndexOf(u'/'));
            }
        }
        parts.push_back(ToText(folder.isEmpty() ? QStringLiteral("/") : folder));
        for (const QString& file : files) {
            parts.push_back(ToText(file.mid(folder.size() + 1)));
        }
    } else if (!files.isEmpty()) {
        parts.push_back(ToText(files.first()));
    }
    return parts;
}

QStringList NameFilters(std::u16string_view filter) {
    const std::vector<std::u16string_view> parts = Split(filter, u"|");
    QStringList filters;
    for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
        // Qt takes the pattern from the last brackets and does not show them. With "*.*", it would
        // hide names without a dot.
        const std::u16string_view pattern = parts[i + 1] == u"*.*" ? u"*" : parts[i + 1];
        filters << ToQString(Concat(parts[i], u" (", pattern, u")"));
    }
    return filters;
}

std::vector<std::u16string> QtPickers::OpenFiles(const FileDialogRequest& request) {
    QFileDialog dialog(OwnerOfBoxes(owner_));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(request.several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    return PartsOfChoice(Choose(dialog, request));
}

std::u16string QtPickers::SaveFile(const FileDialogRequest& request) {
    QFileDialog dialog(OwnerOfBoxes(owner_));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite); // the program itself asks
    return ToText(Choose(dialog, request).value(0));
}

std::u16string QtPickers::BrowseForFolder(std::u16string_view title,
                                          std::u16string_view startFolder) {
    QFileDialog dialog(OwnerOfBoxes(owner_), ToQString(title),
                       NearestFolder(ToQString(startFolder)));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return Run(dialog) ? ToText(dialog.selectedFiles().value(0)) : std::u16string();
}

QStringList QtPickers::Choose(QFileDialog& dialog, const FileDialogRequest& request) {
    dialog.setWindowTitle(ToQString(request.title));
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(NameFilters(request.filter));
    dialog.setDirectory(NearestFolder(folder_));
    if (!Run(dialog)) {
        return {};
    }
    folder_ = dialog.directory().absolutePath();
    return dialog.selectedFiles();
}

/// Shows the dialog and waits. Returns whether the user has chosen anything.
bool QtPickers::Run(QFileDialog& dialog) const {
    eventLoop_.ThrowIfEnded();
    const auto pointer = ShowNormalPointer();
    // Without a layout, the dialog is shown by the desktop, and WaitFor cannot handle it.
    if (dialog.layout() == nullptr) {
        dialog.exec();
    } else {
        WaitFor(dialog);
    }
    eventLoop_.ThrowIfEnded();
    return dialog.result() == QDialog::Accepted;
}

} // namespace vexmarrow

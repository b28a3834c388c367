// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QPushButton;

namespace vexmarrow {

class FileList;
class FileListView;

/// The list of input files and its buttons. Makes and lays out the controls; what they do is wired
/// by the main window.
class FileListPanel final : public QWidget {
    Q_OBJECT

public:
    FileListPanel(FileList& list, QWidget* parent);

    FileListView* ListView1;   // one column "File(s)"
    QWidget* Buttons;          // holds the others
    QPushButton* PushButton13; // "Add VCF File(s)"
    QPushButton* PushButton3;  // "Add All VCF File(s) In Folder"
    QPushButton* PushButton9;  // "Load List Of Files From File"
    QPushButton* PushButton17; // "Remove Filenames Contain. X"
    QPushButton* PushButton11; // "Remove Filenames Not Cont. X"
    QPushButton* PushButton2;  // "Clear List"
    QPushButton* PushButton8;  // "Load Sample/Example Files"
    QPushButton* PushButton5;  // "Help"
};

} // namespace vexmarrow

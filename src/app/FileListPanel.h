// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ControlTable.h"

#include <QWidget>

class QLabel;

namespace vexmarrow {

class FileList;
class FileListView;
class Form1;

/// The list of input files and its buttons.
class FileListPanel final : public QWidget {
    Q_OBJECT

public:
    FileListPanel(FileList& list, ControlTable<Form1> controls, QWidget* parent);

    FileListView* ListView1; // one column "File(s)"
    QLabel* Hint;            // above the list
    QWidget* Buttons;        // the column beside the list
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/WrappedControls.h"

namespace vexmarrow {

/// A grey line below a control that says what the user should know before a run. It takes no room
/// while it is empty.
class Note final : public WrappedLabel {
    Q_OBJECT

public:
    /// Assistive programs read the note as the description of `control`.
    Note(QWidget* parent, std::u16string_view name, QWidget* control);

    /// Sets the text; an empty one hides the note.
    void Say(std::u16string_view text);

private:
    QWidget* control_;
};

} // namespace vexmarrow

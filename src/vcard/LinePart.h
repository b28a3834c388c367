// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

namespace vexmarrow::vcard {

/// Which part of each logical line is searched.
enum class LinePart {
    Fields,    ///< what stands before the separating colon
    Values,    ///< what follows it
    WholeLine, ///< both, and the colon between them
};

} // namespace vexmarrow::vcard

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

namespace vexmarrow::vcard {

/// The part of each logical line that is searched.
enum class LinePart {
    Fields,    ///< all before the separating colon
    Values,    ///< all after it
    WholeLine, ///< both, and the colon
};

} // namespace vexmarrow::vcard

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace vexmarrow {

// Conversions between the window's strings and the texts of everything below it. Both consist of
// 16-bit characters, and every character is kept.

inline QString ToQString(std::u16string_view text) {
    return QString(reinterpret_cast<const QChar*>(text.data()),
                   static_cast<qsizetype>(text.size()));
}
inline std::u16string ToText(const QString& string) {
    return string.toStdU16String();
}

} // namespace vexmarrow

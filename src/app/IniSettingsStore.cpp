// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/IniSettingsStore.h"

#include "app/Strings.h"

#include <QStringList>

#include <algorithm>

namespace vexmarrow {
namespace {

/// Begins a value that is spelled as four hexadecimal digits per 16-bit character, because the
/// file, which is UTF-8, could not hold it as text.
constexpr QStringView kSpelledOut = u"utf16:";
constexpr int kDigits = 4;
constexpr int kHexadecimal = 16;

bool SurvivesUtf8(const QString& value) {
    return QString::fromUtf8(value.toUtf8()) == value;
}

QString StoredForm(const QString& value) {
    if (SurvivesUtf8(value) && !value.startsWith(kSpelledOut)) {
        return value;
    }
    QString spelled = kSpelledOut.toString();
    for (const QChar unit : value) {
        spelled +=
            QString::number(unit.unicode(), kHexadecimal).rightJustified(kDigits, QChar(u'0'));
    }
    return spelled;
}

QString ValueOf(const QString& stored) {
    if (!stored.startsWith(kSpelledOut)) {
        return stored;
    }
    QString value;
    for (qsizetype at = kSpelledOut.size(); at < stored.size(); at += kDigits) {
        bool whole = at + kDigits <= stored.size();
        value += QChar(stored.mid(at, kDigits).toUShort(whole ? &whole : nullptr, kHexadecimal));
        if (!whole) {
            return stored; // typed into the file by hand
        }
    }
    return value;
}

} // namespace

IniSettingsStore::IniSettingsStore()
    : settings_(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Quillmoor")) {
    settings_.setFallbacksEnabled(false);
    settings_.beginGroup(QStringLiteral("Vexmarrow Software"));
}

std::u16string IniSettingsStore::GetSetting(std::u16string_view key,
                                            std::u16string_view fallback) const {
    settings_.sync();
    const QVariant stored = settings_.value(ToQString(key));
    if (!stored.isValid()) {
        return std::u16string(fallback);
    }
    // A value with commas that someone has typed into the file without quotes comes as a list.
    return ToText(ValueOf(stored.toStringList().join(QStringLiteral(", "))));
}

void IniSettingsStore::SaveSetting(std::u16string_view key, std::u16string_view value) {
    settings_.setValue(ToQString(key), StoredForm(ToQString(value)));
    settings_.sync();
}

} // namespace vexmarrow

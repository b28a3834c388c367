// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/IniSettingsStore.h"

#include "app/Strings.h"
#include "shell/StoredForm.h"

#include <QStringList>

namespace vexmarrow {

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
    return SettingFromStoredForm(ToText(stored.toStringList().join(QStringLiteral(", "))));
}

void IniSettingsStore::SaveSetting(std::u16string_view key, std::u16string_view value) {
    settings_.setValue(ToQString(key), ToQString(StoredForm(value)));
    settings_.sync();
}

} // namespace vexmarrow

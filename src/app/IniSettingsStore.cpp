// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "app/IniSettingsStore.h"

#include "app/Strings.h"
#include "base/Failure.h"
#include "shell/SettingEncoding.h"
#include "textio/PathChecks.h"
#include "textio/Paths.h"

#include <QCoreApplication>
#include <QEvent>
#include <QStandardPaths>

namespace vexmarrow {

IniSettingsStore::IniSettingsStore(SystemCalls& calls)
    : calls_(calls),
      path_(NormalizePath(
          ToText(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)) +
          u"/Quillmoor.ini")) {}

bool IniSettingsStore::CanBeUsed() const {
    return IsExistingFile(calls_, path_) || !IsExistingPath(calls_, path_);
}

void IniSettingsStore::Check() const {
    if (!CanBeUsed()) {
        throw FileFailure(u"Could not use the settings file", path_,
                          IsFolder(calls_, path_) ? u"It is a folder"
                                                  : u"It is not a regular file");
    }
}

QSettings* IniSettingsStore::Opened() const {
    if (!CanBeUsed()) {
        return nullptr;
    }
    if (!settings_) {
        settings_.emplace(ToQString(path_), QSettings::IniFormat);
        settings_->beginGroup(QStringLiteral("Vexmarrow Software"));
    }
    settings_->sync();
    return &*settings_;
}

std::u16string IniSettingsStore::GetSetting(std::u16string_view key,
                                            std::u16string_view fallback) const {
    const QSettings* const settings = Opened();
    const QVariant stored = settings != nullptr ? settings->value(ToQString(key)) : QVariant();
    if (!stored.isValid()) {
        return std::u16string(fallback);
    }
    // A value with commas that someone has typed into the file without quotes comes as a list.
    return DecodeSetting(ToText(stored.toStringList().join(QStringLiteral(", "))));
}

void IniSettingsStore::SaveSetting(std::u16string_view key, std::u16string_view value) {
    if (QSettings* const settings = Opened()) {
        settings->setValue(ToQString(key), ToQString(EncodeSetting(value)));
        settings->sync();
        // The toolkit's own update would open the file once more, even if it is a pipe by then.
        QCoreApplication::removePostedEvents(settings, QEvent::UpdateRequest);
    }
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/SettingsStore.h"

#include <QSettings>

#include <optional>
#include <string>

namespace vexmarrow {

class SystemCalls;

/// The settings in the user's INI file (the user's configuration folder, "Quillmoor.ini", group
/// "Vexmarrow Software"), shared with other running copies of the program: every read sees what
/// they have written. While something other than a regular file has that name, reads give their
/// fallbacks and writes do nothing: opening a pipe would wait for its other end.
class IniSettingsStore final : public SettingsStore {
public:
    explicit IniSettingsStore(SystemCalls& calls);

    /// Throws Failure, with the path and the reason, when something has the file's name that is no
    /// regular file.
    void Check() const;

    std::u16string GetSetting(std::u16string_view key, std::u16string_view fallback) const override;
    void SaveSetting(std::u16string_view key, std::u16string_view value) override;

private:
    bool CanBeUsed() const;
    QSettings* Opened() const; // null while it cannot

    SystemCalls& calls_;
    std::u16string path_;
    mutable std::optional<QSettings> settings_; // a read may load the file anew
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/SettingsStore.h"

#include <QSettings>

#include <optional>
#include <string>

namespace vexmarrow {

class SystemCalls;

/// The settings in the user's INI file: "Quillmoor.ini" in the user's configuration folder, group
/// "Vexmarrow Software". Other running copies of the program share it, and every read sees what
/// they have written. If anything but a regular file has that name, a read returns its fallback and
/// a write does nothing, because opening a pipe would wait for its other end.
class IniSettingsStore final : public SettingsStore {
public:
    explicit IniSettingsStore(SystemCalls& calls);

    /// Throws Failure, with the path and the reason, if anything but a regular file has the name.
    void Check() const;

    std::u16string GetSetting(std::u16string_view key, std::u16string_view fallback) const override;
    void SaveSetting(std::u16string_view key, std::u16string_view value) override;

private:
    bool CanBeUsed() const;
    QSettings* Opened() const; // null if the file cannot be used

    SystemCalls& calls_;
    std::u16string path_;
    mutable std::optional<QSettings> settings_; // a read may reload the file
};

} // namespace vexmarrow

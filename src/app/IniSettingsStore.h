// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "shell/SettingsStore.h"

#include <QSettings>

namespace vexmarrow {

/// The settings in the user's INI file (the user's configuration folder, "Quillmoor.ini", group
/// "Vexmarrow Software"), shared with other running copies of the program: every read sees what
/// they have written.
class IniSettingsStore final : public SettingsStore {
public:
    IniSettingsStore();

    std::u16string GetSetting(std::u16string_view key, std::u16string_view fallback) const override;
    void SaveSetting(std::u16string_view key, std::u16string_view value) override;

private:
    mutable QSettings settings_; // a read may load the file anew
};

} // namespace vexmarrow

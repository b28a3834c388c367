// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

/// The user's settings, one text per key, which the program remembers. Nothing is cached: every
/// read looks into the store, and every write is on its way to the disk when the call returns.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    /// The stored text. If there is none, returns `fallback` without storing it.
    virtual std::u16string GetSetting(std::u16string_view key,
                                      std::u16string_view fallback) const = 0;

    /// Stores a text. Reports no failure: if the settings cannot be written to the disk, they are
    /// remembered until the program ends.
    virtual void SaveSetting(std::u16string_view key, std::u16string_view value) = 0;
};

} // namespace vexmarrow

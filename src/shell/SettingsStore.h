// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

/// The user's choices, kept between runs: one text per key. Every read goes to the store and every
/// write is on its way to the disk when the call returns.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    /// The stored text, or `fallback` (which is not stored) when the key was never written.
    virtual std::u16string GetSetting(std::u16string_view key,
                                      std::u16string_view fallback) const = 0;

    /// Creates or overwrites the key. Reports no failure: a store that cannot be written keeps
    /// its values for this sitting.
    virtual void SaveSetting(std::u16string_view key, std::u16string_view value) = 0;
};

} // namespace vexmarrow

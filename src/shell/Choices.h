// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

class SettingsStore;

/// A choice of the user that the program remembers in its settings.
template <typename Value>
struct Choice {
    std::u16string_view key;      ///< of the setting
    std::u16string_view fallback; ///< the text that is assumed until one is stored
};

/// All choices that the program remembers. Keys and stored values must not change: the settings
/// files of earlier versions contain them.
namespace choices {
inline constexpr Choice<bool> kFieldsOnly{u"Option1", u"0"};
inline constexpr Choice<bool> kValuesOnly{u"Option2", u"0"};
inline constexpr Choice<bool> kWholeText{u"Option3", u"1"};
inline constexpr Choice<bool> kSaveToOutputFolder{u"Option4", u"1"};
inline constexpr Choice<bool> kSaveBesideInput{u"Option5", u"0"};
inline constexpr Choice<bool> kReadAsVCards{u"ReadAsVCards", u"False"};
inline constexpr Choice<int> kSelectedTab{u"TabSel", u"0"};
inline constexpr Choice<std::u16string> kLastInputFolder{u"LastFolder", u""};
inline constexpr Choice<std::u16string> kLastOutputFolder{u"LastFolderDot", u""};
inline constexpr Choice<std::u16string> kSampleFiles{u"Snapshot", u""};
inline constexpr Choice<std::u16string> kSetsSeparator{u"Form2.Text2", u"::"};
inline constexpr Choice<double> kHideTips{u"ShowAgain", u"0"};
// Until these two are stored, the user's desktop and the page of the environment are used.
inline constexpr Choice<std::u16string> kOutputFolder{u"Output Folder", u""};
inline constexpr Choice<std::u16string> kCodePage{u"AnsiCodePage", u""};
} // namespace choices

// LoadChoice returns the stored value of a choice. A truth value is stored as "True" or "False" in
// any letter case, or as a number, of which only zero is false. A whole number is stored as any
// number that rounds to 32 bits (halves round to even). LoadChoice throws Failure if the stored
// text is not such a value.

bool LoadChoice(const SettingsStore& settings, const Choice<bool>& choice);
int LoadChoice(const SettingsStore& settings, const Choice<int>& choice);
double LoadChoice(const SettingsStore& settings, const Choice<double>& choice);
std::u16string LoadChoice(const SettingsStore& settings, const Choice<std::u16string>& choice);

void SaveChoice(SettingsStore& settings, const Choice<bool>& choice, bool value);
void SaveChoice(SettingsStore& settings, const Choice<int>& choice, int value);
void SaveChoice(SettingsStore& settings, const Choice<std::u16string>& choice,
                std::u16string_view value);

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace vexmarrow {

class SettingsStore;

/// A choice of the user's that the settings keep.
template <typename Value>
struct Choice {
    std::u16string_view key;      ///< of the setting
    std::u16string_view fallback; ///< stands for the setting where nothing is stored
};

/// Every choice that is kept. The keys and their values must stay as they are: the settings files
/// of earlier versions hold them.
namespace choices {
inline constexpr Choice<bool> kFieldsOnly{u"Option1", u"0"};
inline constexpr Choice<bool> kValuesOnly{u"Option2", u"0"};
inline constexpr Choice<bool> kWholeText{u"Option3", u"1"};
inline constexpr Choice<bool> kSaveToOutputFolder{u"Option4", u"1"};
inline constexpr Choice<bool> kSaveBesideInput{u"Option5", u"0"};
inline constexpr Choice<bool> kReadAsVCards{u"ReadAsVCards", u"False"};
inline constexpr Choice<int> kSelectedTab{u"TabSel", u"0"};
inline constexpr Choice<std::u16string> kOutputFolder{u"Output Folder",
                                                      u""}; // then the user's desktop
inline constexpr Choice<std::u16string> kCodePage{u"AnsiCodePage",
                                                  u""}; // then that of the environment
inline constexpr Choice<std::u16string> kLastInputFolder{u"LastFolder", u""};
inline constexpr Choice<std::u16string> kLastOutputFolder{u"LastFolderDot", u""};
inline constexpr Choice<std::u16string> kSampleFiles{u"Snapshot", u""};
inline constexpr Choice<std::u16string> kSetsSeparator{u"Form2.Text2", u"::"};
inline constexpr Choice<double> kHideTips{u"ShowAgain", u"0"};
} // namespace choices

// What is stored for a choice. A truth is "True" or "False" in any letter case, or a number, of
// which only zero is false; a whole number is any number that rounds to one of 32 bits (halves to
// the even one). Each throws Failure for a text that is no such value.

bool LoadChoice(const SettingsStore& settings, const Choice<bool>& choice);
int LoadChoice(const SettingsStore& settings, const Choice<int>& choice);
double LoadChoice(const SettingsStore& settings, const Choice<double>& choice);
std::u16string LoadChoice(const SettingsStore& settings, const Choice<std::u16string>& choice);

void SaveChoice(SettingsStore& settings, const Choice<bool>& choice, bool value);
void SaveChoice(SettingsStore& settings, const Choice<int>& choice, int value);
void SaveChoice(SettingsStore& settings, const Choice<std::u16string>& choice,
                std::u16string_view value);

} // namespace vexmarrow

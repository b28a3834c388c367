// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Failure.h"
#include "engine/ReplaceText.h"
#include "safety/SafeWriter.h"
#include "support/Doubles.h"
#include "support/Faults.h"
#include "support/TestFolder.h"
#include "textio/CodePage.h"
#include "textio/RFTSFSO.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vexmarrow::test {

using namespace std::string_literals;
using Strings = std::vector<std::string>;
using Texts = std::vector<std::u16string>;
using Calls = FaultySystemCalls;

inline const std::string kMark8 = "\xEF\xBB\xBF";
inline const std::string kMark16 = "\xFF\xFE";

/// Stands for the content of a file that is not there.
inline const std::string kNoFile = "(no file)";

/// Results take the place of their inputs, or go into a folder.
inline const OutputLocation kInPlace{OutputLocation::BesideInput, u""};
inline OutputLocation IntoFolder(const std::u16string& path) {
    return {OutputLocation::OneFolder, path};
}

/// The parts that read and write text, on system calls that can be made to fail.
struct Core : testing::Test, ScriptedDesktop {
    TestFolder folder;
    FaultySystemCalls calls;
    EncodingFlags flags;
    AnsiCodePage ansi{u"windows-1252"};
    RFTSFSO textio{calls, flags, ansi};
    TestFolder state; ///< holds the logs of the program
    SafeWriter writer{calls, {state.Native("first"), state.Native("second")}};
    ReplaceText engine{textio, writer, prompts};
};

/// The bytes of a text in UTF-16, low byte first, after its mark.
inline std::string Utf16(std::u16string_view text) {
    std::string bytes = kMark16;
    for (const char16_t unit : text) {
        bytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    }
    return bytes;
}

} // namespace vexmarrow::test

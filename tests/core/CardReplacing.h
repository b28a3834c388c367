// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Text.h"
#include "core/Core.h"

namespace vexmarrow::test {

/// Where a replacement looks for its find texts: in a part of each line, or, with sets, in all of
/// it.
enum class Where { Fields, Values, WholeLine, Sets };

/// Replaces in files that are read as vCards.
struct CardReplacing : Core {
    /// Replaces in a file of the folder; the lines of `find` and `replace` are the pairs. Returns
    /// the reports.
    Strings Replace(Where where, std::string_view name, std::u16string_view find,
                    std::u16string_view replace, const OutputLocation& location = kInPlace) {
        if (where == Where::Sets) {
            const auto finds = Split(find, kCrLf), replaces = Split(replace, kCrLf);
            const Texts findTexts(finds.begin(), finds.end());
            const Texts replaceTexts(replaces.begin(), replaces.end());
            engine.ReplaceSetsInCards(folder.Path(name), {findTexts, replaceTexts}, location);
        } else {
            engine.ReplaceTextInCards(folder.Path(name), static_cast<vcard::LinePart>(where), find,
                                      replace, location);
        }
        return prompts.TakeSummaries();
    }

    /// Returns what a file of these bytes becomes. There must be no report.
    std::string Replaced(Where where, const std::string& input, std::u16string_view find,
                         std::u16string_view replace) {
        folder.Write("f", input);
        EXPECT_EQ(Replace(where, "f", find, replace), Strings{});
        return folder.Read("f");
    }
};

} // namespace vexmarrow::test

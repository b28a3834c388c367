// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "run/RunNotes.h"

#include "base/Text.h"
#include "engine/ReplaceText.h"
#include "run/RunInputs.h"

namespace vexmarrow {

std::u16string NoteOnTexts(const RunInputs& inputs) {
    if (inputs.SelectedTab() != kSinglePairTab || FindModeOf(inputs) != FindMode::FieldsAndValues) {
        return {};
    }
    const std::size_t toFind = TextsOfLines(inputs.Text1()).size();
    const std::size_t toPutIn = TextsOfLines(inputs.Text2()).size();
    if (toPutIn == 0 || toPutIn >= toFind) { // without any, all that is found is taken out
        return {};
    }
    constexpr std::u16string_view kToPutIn = u" to put in";
    return Concat(Counted(toFind, u" text to find, ", u" texts to find, "),
                  Counted(toPutIn, kToPutIn, kToPutIn));
}

std::u16string NoteOnSets(const RunInputs& inputs) {
    if (inputs.SelectedTab() != kSetsTab || !inputs.Text1().empty()) {
        return {};
    }
    return u"For a run, type any text into \"Find what\" on the other tab, too.";
}

std::u16string NoteOnOptions(const RunInputs& inputs) {
    if (inputs.SelectedTab() == kSetsTab) {
        return u"\"Find Options\" do not count for sets.";
    }
    const FindMode mode = FindModeOf(inputs);
    if (mode == FindMode::Fields || mode == FindMode::Values) {
        return u"The second colon of a line and what follows it are dropped. Every line of the "
               u"result ends with CR LF.";
    }
    return {};
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "run/InputNotes.h"

#include "base/Text.h"
#include "engine/ReplaceText.h"
#include "run/RunInputs.h"
#include "sets/SetList.h"

#include <algorithm>

namespace vexmarrow {
namespace {

constexpr std::u16string_view kOnCommas = u"In contact cards a comma is often written \\,";

/// Whether a text has a comma without a backslash before it.
bool HasPlainComma(std::u16string_view text) {
    for (std::size_t at = text.find(u','); at != std::u16string_view::npos;
         at = text.find(u',', at + 1)) {
        if (at == 0 || text[at - 1] != u'\\') {
            return true;
        }
    }
    return false;
}

/// Says that there are fewer texts to put in than to find.
std::u16string NoteOnCounts(const RunInputs& inputs) {
    const std::size_t toFind = TextsOfLines(inputs.FindText()).size();
    const std::size_t toPutIn = TextsOfLines(inputs.ReplacementText()).size();
    if (toPutIn == 0 || toPutIn >= toFind) { // without any, texts are only removed
        return {};
    }
    return Concat(Decimal(static_cast<long long>(toFind)), u" texts to find, ",
                  Decimal(static_cast<long long>(toPutIn)), u" to put in");
}

} // namespace

std::u16string NoteOnTexts(const RunInputs& inputs) {
    const ReplacementMode mode = inputs.Mode();
    if (inputs.SelectedTab() != Tab::SinglePair || mode == ReplacementMode::None ||
        !LinesAreTexts(inputs)) {
        return {};
    }
    std::u16string note = NoteOnCounts(inputs);
    if (inputs.ReadAsVCards() && mode != ReplacementMode::FieldsOnly &&
        HasPlainComma(inputs.FindText())) {
        note += Concat(note.empty() ? u"" : u"\n", kOnCommas);
    }
    return note;
}

std::u16string NoteOnSets(const RunInputs& inputs, const SetList& sets) {
    if (inputs.SelectedTab() != Tab::Sets) {
        return {};
    }
    if (inputs.FindText().empty()) {
        return u"\"Find what\" on the other tab must not be empty: type any text there.";
    }
    const auto texts = sets.FindTexts();
    const bool any =
        inputs.ReadAsVCards() && std::any_of(texts.begin(), texts.end(), HasPlainComma);
    return std::u16string(any ? kOnCommas : u"");
}

std::u16string NoteOnOptions(const RunInputs& inputs) {
    if (inputs.SelectedTab() == Tab::Sets) {
        return u"\"Find Options\" do not apply to sets.";
    }
    const ReplacementMode mode = inputs.Mode();
    if ((mode == ReplacementMode::FieldsOnly || mode == ReplacementMode::ValuesOnly) &&
        !inputs.ReadAsVCards()) {
        return u"The second colon of each line and everything after it are dropped; tick \"Read as "
               u"vCards\" to keep them. Every line of the result ends with CR LF.";
    }
    return {};
}

} // namespace vexmarrow

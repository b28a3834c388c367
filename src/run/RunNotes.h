// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace vexmarrow {

class RunInputs;
class SetList;

// What a person ought to know before a run: sentences to stand beside the controls that they are
// about. Each is the empty text while there is nothing to say.

/// That there are fewer texts to put in than to find, where each line is a text; and, in a line of
/// its own, how cards write a comma that is to be found in their values.
std::u16string NoteOnTexts(const RunInputs& inputs);

/// That a run with sets needs a text in the box of the single pair; else, how cards write a comma
/// that is to be found.
std::u16string NoteOnSets(const RunInputs& inputs, const SetList& sets);

/// What the way of replacing that is chosen does to the rest of a line, or that the choice has no
/// effect.
std::u16string NoteOnOptions(const RunInputs& inputs);

} // namespace vexmarrow

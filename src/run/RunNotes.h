// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace vexmarrow {

class RunInputs;

// What a person ought to know before a run: sentences to stand beside the controls that they are
// about. Each is the empty text while there is nothing to say.

/// That there are fewer texts to put in than to find, where each line is a text.
std::u16string NoteOnTexts(const RunInputs& inputs);

/// That a run with sets needs a text in the box of the single pair.
std::u16string NoteOnSets(const RunInputs& inputs);

/// What the way of replacing that is chosen does to the rest of a line, or that the choice has no
/// effect.
std::u16string NoteOnOptions(const RunInputs& inputs);

} // namespace vexmarrow

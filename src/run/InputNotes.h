// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace vexmarrow {

class RunInputs;
class SetList;

// Notes that tell the user before a run what may be surprising about the inputs. Each note is shown
// beside the controls that it is about. It is empty if there is nothing to say.

/// If each line counts as a separate text, says that there are fewer texts to put in than to find.
/// A second line says how cards write commas, if a comma is to be found in their values.
std::u16string NoteOnTexts(const RunInputs& inputs);

/// Says that a run with sets also needs a text to find on the other tab. If there is one, says how
/// cards write commas, if a comma is to be found.
std::u16string NoteOnSets(const RunInputs& inputs, const SetList& sets);

/// Says what the chosen mode does to the rest of each line, or that the choice has no effect.
std::u16string NoteOnOptions(const RunInputs& inputs);

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

namespace vexmarrow {

class FileList;
class Prompts;

/// The extension of the files that the program is for. FileAdding::AddAllFilesInFolder takes only
/// files with this whole extension, but ValidateListFiles accepts every part of it.
inline constexpr std::u16string_view kExpectedExtension = u"vcf";

/// Looks for rows whose extension is not a part of the expected one, in any letter case, and asks
/// the user whether to remove them. "vcf", "VC", "f" and the empty extension are accepted, but not
/// "vcf2", "vcard" or "txt". Traps its own failures.
void ValidateListFiles(FileList& list, Prompts& prompts);

} // namespace vexmarrow

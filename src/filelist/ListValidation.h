// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string_view>

namespace vexmarrow {

class FileList;
class Prompts;

/// The text after the last "." of the whole path (which may lie in a folder's name); the whole path
/// when it holds no ".".
std::u16string_view FileExtension(std::u16string_view path);

/// Whether an extension fits the files that the program is for: when it is a part of "vcf", letter
/// case not counting. "vcf", "VC", "f" and the empty extension fit; "vcf2", "vcard", "txt" do not.
bool FitsExpectedExtension(std::u16string_view extension);

/// Looks at every row's extension and, when some do not fit, asks whether to remove those rows.
void ValidateListFiles(FileList& list, Prompts& prompts);

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vexmarrow {

class AnsiCodePage;
class FileList;
class RunInputs;
class SetList;
class SystemCalls;

/// Whether the listed files look like UTF-8 where it matters: while a page of single bytes is in
/// force. In UTF-8 without a mark, letters outside ASCII are not found then and come in as other
/// bytes than the file has for them; in UTF-8 with a mark, those that the page lacks are lost.
///
/// Looks at the beginning of the first few files only. Takes no lock and minds none, waits for
/// nothing, and passes over what it cannot read. What a run does and says stays the same.
class Utf8Look {
public:
    Utf8Look(SystemCalls& calls, const FileList& list, const AnsiCodePage& ansi)
        : calls_(calls), list_(list), ansi_(ansi) {}

    /// Whether all unmarked files are UTF-8, and either a file has the mark, or there are letters
    /// outside ASCII in these files and in the texts that a run would use now. Reads files only
    /// when it is called for the first time, or after Forget. Never while they are read as vCards,
    /// for then a run looks itself how each of them is encoded.
    bool IsSeen(const RunInputs& inputs, const SetList& sets);

    /// Forgets the files. To be called when there are others in the list, or other texts in them.
    void Forget() { found_.reset(); }

private:
    struct Found {
        bool mark = false;       ///< a file has the mark of UTF-8
        bool letters = false;    ///< an unmarked file has letters outside ASCII, in UTF-8
        bool otherBytes = false; ///< an unmarked file is not UTF-8
    };
    Found Look();
    bool ReadBeginning(std::u16string_view path, std::string& bytes);

    SystemCalls& calls_;
    const FileList& list_;
    const AnsiCodePage& ansi_;
    std::optional<Found> found_;
};

} // namespace vexmarrow

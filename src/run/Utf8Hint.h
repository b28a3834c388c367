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

/// Decides whether to tell the user that the listed files look like UTF-8, while the code page has
/// single bytes. With such a page, letters outside ASCII are not found in UTF-8 files without a
/// mark, and are inserted there as bytes of the page. From UTF-8 files with a mark, characters that
/// the page lacks are lost.
///
/// Only the beginnings of the first few files are read. Locks are neither taken nor respected, and
/// files that cannot be read at once are skipped. A run does not depend on the hint.
class Utf8Hint {
public:
    Utf8Hint(SystemCalls& calls, const FileList& list, const AnsiCodePage& ansi)
        : calls_(calls), list_(list), ansi_(ansi) {}

    /// Whether all unmarked files are UTF-8 and, in addition, either a file has the mark, or there
    /// are letters outside ASCII both in these files and in the texts that a run would use now.
    /// False if files are read as vCards, because a run then detects the encoding of each file.
    /// Reads files only in the first call, and in the first call after Forget.
    bool Applies(const RunInputs& inputs, const SetList& sets);

    /// Forgets what was read. To be called when the list or the listed files may have changed.
    void Forget() { found_.reset(); }

private:
    struct Found {
        bool mark = false;       ///< a file has the mark of UTF-8
        bool letters = false;    ///< an unmarked file has letters outside ASCII, in UTF-8
        bool otherBytes = false; ///< an unmarked file is not UTF-8
    };
    Found LookAtFiles();
    bool ReadBeginning(std::u16string_view path, std::string& bytes);

    SystemCalls& calls_;
    const FileList& list_;
    const AnsiCodePage& ansi_;
    std::optional<Found> found_;
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace vexmarrow {

class FileList;
class RunInputs;

/// Finds files whose results get in each other's way: files of several folders that have the same
/// name, and files that are listed more than once.
class ResultConflicts {
public:
    /// Looks at all rows, and forgets those of the call before. Takes time in proportion to the
    /// total length of the rows.
    void Find(const FileList& list);

    /// What the user should know about the rows of the last call of Find before a run that saves
    /// its results where `inputs` says. Returns up to two sentences with a line feed between them.
    /// Takes very little time, however long the list is.
    std::u16string Note(const RunInputs& inputs) const;

private:
    /// Files that are listed more than once.
    struct Repeated {
        std::size_t files = 0;
        bool moreThanTwice = false; ///< at least one of them

        void Add(std::size_t rows);
        std::u16string Note() const;
    };

    std::size_t sharingNames_ = 0; // files that have the name of another file
    std::unordered_set<std::u16string> foldersOfSharing_;
    Repeated repeated_;
    std::unordered_map<std::u16string, Repeated>
        repeatedIn_; // by folder; folders without any are left out
};

} // namespace vexmarrow

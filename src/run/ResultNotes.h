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

/// What a person ought to know before a run about the results that get in each other's way: because
/// files of several folders have one name, or because a file is listed more than once.
class ResultNotes {
public:
    /// Looks at all rows, in time that grows with their number and lengths. Remembers nothing of
    /// an earlier look.
    void Look(const FileList& list);

    /// What is true of the rows of the last look while results go where `inputs` says: no, one
    /// or two sentences, with a line feed between them. Costs next to nothing, however long the
    /// list was.
    std::u16string Note(const RunInputs& inputs) const;

private:
    /// Files that are listed more than once.
    struct Repeated {
        std::size_t files = 0;
        bool moreThanTwice = false; ///< one of them, at least

        void Add(std::size_t rows);
        std::u16string Note() const;
    };

    std::size_t sharingNames_ = 0; // files of which another one has the name
    std::unordered_set<std::u16string> foldersOfSharing_;
    Repeated repeated_;
    std::unordered_map<std::u16string, Repeated> repeatedIn_; // by folder, for those that have any
};

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "run/ResultNotes.h"

#include "base/Text.h"
#include "base/Utf8.h"
#include "filelist/FileList.h"
#include "run/RunInputs.h"
#include "textio/Paths.h"

#include <deque>
#include <filesystem>
#include <string_view>

namespace vexmarrow {
namespace {

/// The same text for two spellings of one path; what links lead to is not looked up.
std::u16string OneSpelling(std::u16string_view path) {
    std::u16string plain = NormalizePath(path);
    return plain.find(u"/.") == std::u16string::npos
               ? plain
               : TextFromNativeName(
                     std::filesystem::path(NativeName(plain)).lexically_normal().native());
}

} // namespace

void ResultNotes::Repeated::Add(std::size_t rows) {
    ++files;
    moreThanTwice = moreThanTwice || rows > 2;
}

std::u16string ResultNotes::Repeated::Note() const {
    if (files == 0) {
        return {};
    }
    const std::u16string_view is = files == 1 ? u" is " : u" are ";
    return Concat(Decimal(static_cast<long long>(files)), files == 1 ? u" file" : u" files", is,
                  moreThanTwice ? u"listed more than once and" : u"listed twice and", is,
                  moreThanTwice ? u"changed as often" : u"changed twice");
}

void ResultNotes::Look(const FileList& list) {
    *this = {};
    std::deque<std::u16string> respelled; // those that are not in the list
    std::unordered_map<std::u16string_view, std::size_t> rowsOf;
    rowsOf.reserve(list.Count());
    for (std::size_t number = 1; number <= list.Count(); ++number) {
        std::u16string_view path = list.Row(number);
        if (std::u16string other = OneSpelling(path); other != path) {
            path = respelled.emplace_back(std::move(other));
        }
        ++rowsOf[path];
    }
    std::unordered_map<std::u16string_view, std::size_t> filesOf; // by name
    filesOf.reserve(rowsOf.size());
    for (const auto& [path, rows] : rowsOf) {
        ++filesOf[NameOfPath(path)];
        const std::u16string_view folder = FolderOfPath(path);
        if (rows > 1 && !folder.empty()) { // without one, it has no result beside it
            repeated_.Add(rows);
            repeatedIn_[std::u16string(folder)].Add(rows);
        }
    }
    for (const auto& [path, rows] : rowsOf) {
        if (filesOf[NameOfPath(path)] > 1) {
            ++sharingNames_;
            foldersOfSharing_.insert(std::u16string(FolderOfPath(path)));
        }
    }
}

std::u16string ResultNotes::Note(const RunInputs& inputs) const {
    const OutputLocation location = LocationOf(inputs);
    if (!location.Option4) {
        return location.Option5 ? repeated_.Note() : std::u16string();
    }
    if (location.Text3.empty()) {
        return {}; // there are no results without a folder
    }
    // Whatever the name, this is the folder that results are put into.
    const std::u16string folder(FolderOfPath(OneSpelling(OutputPath(u"name", location))));
    std::u16string note;
    if (sharingNames_ > 0) {
        note = Concat(Decimal(static_cast<long long>(sharingNames_)),
                      u" files have the name of another",
                      foldersOfSharing_.contains(folder) ? u" and are written over one of them"
                                                         : u": the last one wins");
    }
    const auto repeated = repeatedIn_.find(folder);
    if (repeated != repeatedIn_.end()) {
        note += Concat(note.empty() ? u"" : u"\n", repeated->second.Note());
    }
    return note;
}

} // namespace vexmarrow

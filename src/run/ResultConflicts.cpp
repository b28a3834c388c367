// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "run/ResultConflicts.h"

#include "base/Text.h"
#include "base/Utf8.h"
#include "filelist/FileList.h"
#include "run/RunInputs.h"
#include "textio/Paths.h"

#include <bit>
#include <deque>
#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

namespace vexmarrow {
namespace {

/// Whether OneSpelling would return the path unchanged. True only if that is quickly seen.
bool IsPlain(std::u16string_view path) {
    for (std::size_t i = path.find(u'/'); i < path.size(); i = path.find(u'/', i + 1)) {
        if (i + 1 < path.size() && (path[i + 1] == u'/' || path[i + 1] == u'.')) {
            return false;
        }
    }
    return true;
}

/// The same text for all spellings of one path. Does not look up where links lead.
std::u16string OneSpelling(std::u16string_view path) {
    const std::string name = NativeName(NormalizePath(path));
    return TextFromNativeName(std::filesystem::path(name).lexically_normal().native());
}

/// Tells by their hashes which of many texts may occur more than once: all that do, and a few
/// others. To remember the texts themselves would take several times as long.
class Repeats {
public:
    explicit Repeats(std::size_t count) : seen_(std::bit_ceil(count * kSpread)), again_(seen_) {}

    void Add(std::size_t hash) {
        const std::size_t place = hash & (seen_.size() - 1);
        again_[place] = again_[place] || seen_[place];
        seen_[place] = true;
    }
    bool Contain(std::size_t hash) const { return again_[hash & (again_.size() - 1)]; }

private:
    static constexpr std::size_t kSpread = 32; // one text of this many is taken for another

    std::vector<bool> seen_;
    std::vector<bool> again_;
};

} // namespace

void ResultConflicts::Repeated::Add(std::size_t rows) {
    ++files;
    moreThanTwice = moreThanTwice || rows > 2;
}

std::u16string ResultConflicts::Repeated::Note() const {
    if (files == 0) {
        return {};
    }
    const std::u16string_view is = files == 1 ? u" is " : u" are ";
    return Concat(Counted(files, u" file", u" files"), is,
                  moreThanTwice ? u"listed more than once and" : u"listed twice and", is,
                  moreThanTwice ? u"changed as often" : u"changed twice");
}

void ResultConflicts::Find(const FileList& list) {
    *this = {};
    struct Row {
        std::u16string_view path;
        std::size_t hash;
        std::size_t hashOfName;
    };
    const std::hash<std::u16string_view> hash;
    std::vector<Row> rows;
    rows.reserve(list.Count());
    std::deque<std::u16string> respelled; // owns the paths that are not spelled as in the list
    Repeats paths(list.Count() + 1);
    Repeats names(list.Count() + 1);
    for (std::size_t number = 1; number <= list.Count(); ++number) {
        std::u16string_view path = list.Row(number);
        if (!IsPlain(path)) {
            path = respelled.emplace_back(OneSpelling(path));
        }
        rows.push_back({path, hash(path), hash(NameOfPath(path))});
        paths.Add(rows.back().hash);
        names.Add(rows.back().hashOfName);
    }

    std::unordered_map<std::u16string_view, std::size_t> rowsOf;  // by path
    std::unordered_map<std::u16string_view, std::size_t> filesOf; // by name
    std::vector<std::u16string_view> sharing;
    for (const Row& row : rows) {
        const bool known = paths.Contain(row.hash) && ++rowsOf[row.path] > 1;
        if (!known && names.Contain(row.hashOfName)) {
            ++filesOf[NameOfPath(row.path)];
            sharing.push_back(row.path);
        }
    }
    for (const auto& [path, count] : rowsOf) {
        const std::u16string_view folder = FolderOfPath(path);
        if (count > 1 && !folder.empty()) { // without a folder, no result is saved
            repeated_.Add(count);
            repeatedIn_[std::u16string(folder)].Add(count);
        }
    }
    for (const std::u16string_view path : sharing) {
        if (filesOf[NameOfPath(path)] > 1) {
            ++sharingNames_;
            foldersOfSharing_.insert(std::u16string(FolderOfPath(path)));
        }
    }
}

std::u16string ResultConflicts::Note(const RunInputs& inputs) const {
    const OutputLocation location = LocationOf(inputs);
    if (location.kind == OutputLocation::BesideInput) {
        return repeated_.Note();
    }
    if (location.kind == OutputLocation::Nowhere || location.folder.empty()) {
        return {}; // there will be no results
    }
    // The folder does not depend on the name, so any name will do.
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

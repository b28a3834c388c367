// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/Paths.h"

namespace vexmarrow {
namespace {

std::u16string WithPairsHalved(std::u16string_view path, char16_t separator) {
    std::u16string halved;
    halved.reserve(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        halved.push_back(path[i]);
        if (path[i] == separator && i + 1 < path.size() && path[i + 1] == separator) {
            ++i;
        }
    }
    return halved;
}

std::u16string WithRunsCollapsed(std::u16string_view path, char16_t separator) {
    std::u16string collapsed;
    collapsed.reserve(path.size());
    for (const char16_t unit : path) {
        if (unit != separator || collapsed.empty() || collapsed.back() != separator) {
            collapsed.push_back(unit);
        }
    }
    return collapsed;
}

} // namespace

std::u16string_view FolderOfPath(std::u16string_view path, PathStyle style) {
    return path.substr(0, path.size() - NameOfPath(path, style).size());
}

std::u16string_view NameOfPath(std::u16string_view path, PathStyle style) {
    const std::size_t last = path.rfind(SeparatorOf(style));
    return last == std::u16string_view::npos ? path : path.substr(last + 1);
}

std::u16string NormalizePath(std::u16string_view path, PathStyle style) {
    const char16_t separator = SeparatorOf(style);
    if (style == PathStyle::Posix) {
        return WithRunsCollapsed(path, separator);
    }
    if (path.empty() || path.front() != separator) {
        return WithPairsHalved(path, separator);
    }
    const std::size_t rest = path.find_first_not_of(separator);
    std::u16string network(2, separator);
    if (rest != std::u16string_view::npos) {
        network += WithPairsHalved(path.substr(rest), separator);
    }
    return network;
}

std::u16string WithSeparator(std::u16string_view folder) {
    std::u16string path(folder);
    if (path.empty() || path.back() != kSeparator) {
        path.push_back(kSeparator);
    }
    return path;
}

std::string ParentFolder(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace vexmarrow

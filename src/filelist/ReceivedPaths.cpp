// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "filelist/ReceivedPaths.h"

#include "base/Utf8.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace vexmarrow {
namespace {

bool EqualInAscii(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

/// The bytes that an address spells. A "%" without two digits after it stands for itself.
std::string PercentDecoded(std::string_view text) {
    constexpr std::size_t kDigits = 2;
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const std::string_view digits = text.substr(i + 1, kDigits);
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
        if (text[i] == '%' && error == std::errc() && end == digits.data() + kDigits) {
            bytes.push_back(static_cast<char>(byte));
            i += kDigits;
        } else {
            bytes.push_back(text[i]);
        }
    }
    return bytes;
}

std::optional<std::string> LocalPath(std::string_view address, std::string_view host) {
    constexpr std::string_view kScheme = "file:";
    if (!EqualInAscii(address.substr(0, kScheme.size()), kScheme)) {
        return std::nullopt;
    }
    address.remove_prefix(kScheme.size());
    if (address.starts_with("//")) {
        address.remove_prefix(2);
        const std::string_view place = address.substr(0, address.find('/'));
        if (!place.empty() && !EqualInAscii(place, "localhost") && !EqualInAscii(place, host)) {
            return std::nullopt;
        }
        address.remove_prefix(place.size());
    }
    return address.starts_with('/') ? std::optional(PercentDecoded(address)) : std::nullopt;
}

std::string AbsolutePath(std::string_view name, std::string_view workingFolder) {
    if (name.starts_with('/') || workingFolder.empty()) {
        return std::string(name);
    }
    // Shells write "./name" for a file in the working folder and "." for the folder itself.
    name.remove_prefix(name.starts_with("./") ? 2 : name == "." ? 1 : 0);
    std::string path(workingFolder);
    path.append(path.ends_with('/') ? "" : "/").append(name);
    return path;
}

} // namespace

std::vector<std::u16string> PathsInUriList(std::string_view list, std::string_view host) {
    std::vector<std::u16string> paths;
    list = list.substr(0, list.find('\0')); // some programs also send the zero that ends their text
    while (!list.empty()) {
        const std::size_t end = std::min(list.find_first_of("\r\n"), list.size());
        if (const std::optional<std::string> path = LocalPath(list.substr(0, end), host)) {
            paths.push_back(TextFromNativeName(*path));
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return paths;
}

std::vector<std::u16string> PathsOfArguments(const std::vector<std::string>& arguments,
                                             std::string_view workingFolder) {
    std::vector<std::u16string> paths;
    bool onlyNames = false;
    for (const std::string& argument : arguments) {
        if (!onlyNames && argument.starts_with('-')) {
            onlyNames = argument == "--";
        } else if (!argument.empty()) {
            paths.push_back(TextFromNativeName(AbsolutePath(argument, workingFolder)));
        }
    }
    return paths;
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Utf8.h"
#include "filelist/ReceivedPaths.h"
#include "fuzz/Fuzz.h"

#include <cctype>
#include <vector>

// A dropped list of addresses: any paths that are spelled as addresses are read back unchanged, and
// a list with any content is read line by line.

namespace vexmarrow::fuzz {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kHost = "Host";

/// A path as an address; `style` chooses one of the ways to spell it.
std::string AddressOf(std::string_view path, unsigned style) {
    constexpr std::string_view kStarts[] = {"file://", "file:", "FILE://localhost", "File://hOST"};
    const std::string_view digits = style & 4U ? "0123456789ABCDEF" : "0123456789abcdef";
    std::string address(kStarts[path.starts_with("//") ? 0 : style % 4]);
    for (std::size_t i = 0; i < path.size(); ++i) {
        const auto byte = static_cast<std::uint8_t>(path[i]);
        const auto spells = [&](std::size_t at) {
            return at < path.size() && std::isxdigit(static_cast<std::uint8_t>(path[at])) != 0;
        };
        const bool mayBeRaw = "\r\n\0"sv.find(path[i]) == std::string_view::npos &&
                              !(path[i] == '%' && spells(i + 1) && spells(i + 2));
        if (style & 8U ? mayBeRaw : byte == '/' || (byte >= 'a' && byte <= 'z')) {
            address += path[i];
        } else {
            address += {'%', digits[byte / 16], digits[byte % 16]};
        }
    }
    return address;
}

void TryPaths(Input input) {
    constexpr std::string_view kEnds[] = {"\r\n", "\n", "\r", "\n\r\n# file:///comment\r\n",
                                          "\nhttp://Host/a\nfile://other/a\nfile:a\n"};
    std::vector<std::u16string> paths;
    std::string list;
    while (const std::size_t length = input.Byte() % 32) {
        const unsigned style = input.Byte();
        const std::string path = "/" + std::string(input.Bytes(length - 1));
        paths.push_back(TextFromNativeName(path));
        list.append(AddressOf(path, style)).append(kEnds[style / 16 % std::size(kEnds)]);
    }
    list.append("\0\nfile:///after"sv);
    Require(PathsInUriList(list, kHost) == paths, "paths come back from their addresses");
}

} // namespace

void TryInput(Input input) {
    TryPaths(input);
    std::string_view list = input.Rest();
    const std::vector<std::u16string> paths = PathsInUriList(list, kHost);
    std::vector<std::u16string> oneByOne;
    list = list.substr(0, list.find('\0'));
    while (!list.empty()) {
        const std::string_view line = list.substr(0, list.find_first_of("\r\n"));
        for (const std::u16string& path : PathsInUriList(line, kHost)) {
            Require(path.starts_with(u'/'), "a path begins at the root");
            Require(NativeName(path).size() + 5 <= line.size(),
                    "a path is no longer than its address");
            oneByOne.push_back(path);
        }
        list.remove_prefix(std::min(list.size(), line.size() + 1));
    }
    Require(paths == oneByOne, "a list is its lines");
}

} // namespace vexmarrow::fuzz

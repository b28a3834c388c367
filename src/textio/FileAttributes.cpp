// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "textio/FileAttributes.h"

#include "base/Utf8.h"
#include "textio/Paths.h"
#include "textio/SystemCalls.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

namespace vexmarrow {
namespace {

using Bytes = std::array<unsigned char, 256>;

/// Reads an extended attribute. Returns its length, or nothing if it is missing or too long.
std::optional<std::size_t> ReadAttribute(SystemCalls& calls, const std::string& path,
                                         const char* name, Bytes& value) {
    const ssize_t length = calls.Attribute(path, name, value.data(), value.size());
    if (length < 0) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(length);
}

/// The attributes on an NTFS volume: four bytes, the most significant first.
std::optional<int> NtfsAttributes(SystemCalls& calls, const std::string& path) {
    Bytes value{};
    if (ReadAttribute(calls, path, "system.ntfs_attrib_be", value) != 4U) {
        return std::nullopt;
    }
    return static_cast<int>((value[0] & 0x7FU) << 24U | value[1] * 0x10000U | value[2] * 0x100U |
                            value[3]);
}

/// The attributes in a folder that is shared with Windows. The old form is a hexadecimal number in
/// text ("0x22"). The new one is a record with its version at byte 2. In versions 3 to 5, byte 8
/// tells which fields are valid (bit 0: the attributes), and the attributes are at byte 12. Numbers
/// are little-endian.
std::optional<int> ShareAttributes(SystemCalls& calls, const std::string& path) {
    Bytes value{};
    const std::size_t length = ReadAttribute(calls, path, "user.DOSATTRIB", value).value_or(0);
    if (length > 2 && value[0] == '0' && value[1] == 'x') {
        std::string digits(value.begin() + 2, value.begin() + static_cast<std::ptrdiff_t>(length));
        int word = 0;
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), word, 16);
        return error == std::errc() && end != digits.data() ? std::optional(word) : std::nullopt;
    }
    const bool known = length >= 16 && value[0] == 0 && value[2] >= 3 && value[2] <= 5;
    if (!known || (value[8] & 1U) == 0) {
        return std::nullopt;
    }
    return static_cast<int>(value[12] | value[13] * 0x100U | value[14] * 0x10000U);
}

int ModeAttributes(const FileStatus& status, std::string_view path) {
    while (path.size() > 1 && path.back() == '/') {
        path.remove_suffix(1);
    }
    const std::string_view name = path.substr(path.rfind('/') + 1);
    int word = 0;
    word |= status.IsFolder() ? kDirectory : 0;
    word |= status.IsRegular() ? kArchive : 0;
    word |= (status.mode & S_IWUSR) == 0 ? kReadOnly : 0;
    word |= name.starts_with('.') ? kHidden : 0;
    return word;
}

} // namespace

int FileAttributes(SystemCalls& calls, std::u16string_view path) {
    const std::string name = NativeName(path);
    FileStatus status;
    if (calls.StatusOfTarget(name, status) != 0) {
        return 0;
    }
    if (const std::optional<int> word = ShareAttributes(calls, name)) {
        return *word;
    }
    if (const std::optional<int> word = NtfsAttributes(calls, name)) {
        return *word;
    }
    return ModeAttributes(status, name);
}

} // namespace vexmarrow

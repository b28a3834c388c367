// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/SystemCalls.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vexmarrow {

/// A regular file opened for reading. Pipes, sockets, devices and folders are refused without
/// waiting for anything. All failures are thrown as Failure, with path and reason.
class InputFile {
public:
    InputFile(SystemCalls& calls, std::u16string_view path);

    /// Reads on: up to `count` bytes, fewer only at the end of the file.
    std::string Read(std::size_t count);

    /// Reads on to the end of the file.
    std::string ReadRest();

    /// The size in bytes of the file of that path by opening it; nothing when it cannot be opened.
    static std::optional<std::uint64_t> SizeOf(SystemCalls& calls, std::u16string_view path);

private:
    SystemCalls& calls_;
    std::u16string path_;
    Descriptor descriptor_;
    std::uint64_t size_ = 0;
    std::uint64_t position_ = 0;
};

} // namespace vexmarrow

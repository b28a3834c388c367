// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// The paths in a dropped "text/uri-list", in order: the file addresses of this machine (without a
/// host, or with "localhost" or `host`). A path is whatever bytes its address holds; a raw "#" or
/// "?" is one of them. Other addresses and comment lines are left out.
std::vector<std::u16string> PathsInUriList(std::string_view list, std::string_view host);

/// The paths that a desktop or a user names when starting the program, in order: all arguments but
/// empty ones, the first "--", and what begins with "-" before that. A relative path is one in the
/// working folder, of which an empty text says that nobody knows it.
std::vector<std::u16string> PathsOfArguments(const std::vector<std::string>& arguments,
                                             std::string_view workingFolder);

} // namespace vexmarrow

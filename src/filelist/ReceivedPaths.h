// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

/// The paths in a dropped "text/uri-list", in order. Only file addresses of this machine count:
/// those with no host, or with "localhost" or `host`. Other addresses and comment lines are left
/// out. A path is the exact bytes that its address spells, even a raw "#" or "?".
std::vector<std::u16string> PathsInUriList(std::string_view list, std::string_view host);

/// The paths that were given to the program when it was started, in order. Empty arguments, the
/// first "--", and arguments before it that begin with "-" are left out. Relative paths are made
/// absolute with `workingFolder`; they stay relative if it is empty, that is, unknown.
std::vector<std::u16string> PathsOfArguments(const std::vector<std::string>& arguments,
                                             std::string_view workingFolder);

} // namespace vexmarrow

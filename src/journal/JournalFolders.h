// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow {

class SystemCalls;

/// Where this user's journals lie, best place first: "vexmarrow" in the folder for the state of
/// programs (XDG_STATE_HOME, else ~/.local/state), and a folder of /var/tmp.
std::vector<std::string> JournalFoldersOfUser();

/// Makes the folder, and those on the way to it, if they are missing. Returns 0 when it is a folder
/// (no link) that belongs to this user and is open to nobody else, which is mended if need be; else
/// the errno of the failure, EACCES for a folder of somebody else.
int PrepareFolder(SystemCalls& calls, const std::string& folder);

/// A name for a journal that nobody can guess, and whether a name is one of these.
std::string NewJournalName();
bool IsJournalName(std::string_view name);

/// So many random bytes, in hexadecimal.
std::string RandomHex(std::size_t bytes);

/// What tells this machine from others.
std::string NameOfMachine();

} // namespace vexmarrow

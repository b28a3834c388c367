// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/FileWriter.h"
#include "textio/SystemCalls.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vexmarrow {

class Journal;

/// A result for a file that does not exist yet. It is written into a file of the same folder that
/// has no name until it is complete. Where a file system has no such files, it has a passing name
/// that nobody can guess, and which the journal knows, so that recovery removes what is left.
class Creation final : public PendingFile {
public:
    /// Throws Failure when no file can be made there.
    Creation(SystemCalls& calls, Journal& journal, std::u16string_view path);
    ~Creation() override;
    Creation(const Creation&) = delete;
    Creation& operator=(const Creation&) = delete;

    void Append(std::string_view bytes) override;
    void Commit() override;

private:
    void MakeWithPassingName(const std::string& folder);
    void Write();
    [[noreturn]] void Fail(int error) const;

    SystemCalls& calls_;
    Journal& journal_;
    std::u16string path_;
    std::string nativePath_;
    Descriptor file_;
    std::string passingName_; // empty for a file without a name
    std::string buffer_;
    std::uint64_t written_ = 0;
};

/// Whether a name, without folder, is such a passing name.
bool IsPassingName(std::string_view name);

} // namespace vexmarrow

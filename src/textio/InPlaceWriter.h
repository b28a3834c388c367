// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "textio/FileWriter.h"
#include "textio/SystemCalls.h"

namespace vexmarrow {

/// Writes results into the existing file itself, so that its owner, mode, links and attributes
/// stay, and never truncates before the new bytes are there. When the new bytes do not fit on the
/// disk, the file keeps its old ones; a file that was to be created is then absent. A failure (or
/// an end of the program) between the first and the last old byte that is overwritten leaves a
/// mixture of both.
class InPlaceWriter final : public FileWriter {
public:
    explicit InPlaceWriter(SystemCalls& calls) : calls_(calls) {}

    std::unique_ptr<PendingFile> Begin(std::u16string_view path, WriteStart start) override;

private:
    SystemCalls& calls_;
};

} // namespace vexmarrow

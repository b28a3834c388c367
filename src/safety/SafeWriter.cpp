// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/SafeWriter.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "safety/OpenTarget.h"
#include "safety/PendingNewFile.h"
#include "safety/PendingOverwrite.h"
#include "textio/Descriptor.h"
#include "textio/InputFile.h"

#include <cerrno>

namespace vexmarrow {

std::unique_ptr<PendingFile> SafeWriter::Begin(std::u16string_view path, InputFile* source) {
    openRecords_.Prepare();
    if (source != nullptr) {
        RefuseUnfinished(source->Path(), source->Number(), source->Status());
    }
    const bool samePath = source != nullptr && source->Path() == path;
    if (samePath && source->IsWritable()) { // no need to open it again
        const std::u16string_view reason =
            ReasonToRefuse(calls_, source->Number(), source->Status());
        if (!reason.empty()) {
            throw FileFailure(kCouldNotWrite, path, reason);
        }
        return std::make_unique<PendingOverwrite>(
            calls_, log_, openRecords_, path, Descriptor(calls_), source->Status(), source, true);
    }
    FileStatus status;
    OpenedFile opened = OpenTarget(calls_, NativeName(path), status, source);
    if (opened.error == ENOENT) {
        return std::make_unique<PendingNewFile>(calls_, log_, path,
                                                source != nullptr ? &source->Status() : nullptr);
    }
    if (opened.error != 0) {
        throw FileFailure(kCouldNotWrite, path, ReasonOf(opened));
    }
    const bool isItself = source != nullptr && status.SameFileAs(source->Status());
    if (samePath && !isItself) {
        throw FileFailure(kCouldNotWrite, path,
                          u"Another program has replaced it with another file");
    }
    RefuseUnfinished(path, opened.file.Number(), status);
    return std::make_unique<PendingOverwrite>(
        calls_, log_, openRecords_, path, std::move(opened.file),
        isItself ? source->Status() : status, source, isItself);
}

void SafeWriter::Settle() noexcept {
    log_.End();
    openRecords_.CloseLogs();
}

void SafeWriter::RefuseUnfinished(std::u16string_view path, int descriptor,
                                  const FileStatus& status) {
    static const std::string kNone;
    const std::string& own = log_.File() != nullptr ? log_.File()->Path() : kNone;
    if (openRecords_.Include(FullPath(NativeName(path)), status, descriptor, own)) {
        throw FileFailure(kCouldNotWrite, path, kPartlyWritten);
    }
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/SafeWriter.h"

#include "base/Failure.h"
#include "base/Utf8.h"
#include "safety/Creation.h"
#include "safety/LogFolders.h"
#include "safety/Refusing.h"
#include "safety/Replacement.h"
#include "textio/InputFile.h"

#include <cerrno>

namespace vexmarrow {

std::unique_ptr<PendingFile> SafeWriter::Begin(std::u16string_view path, InputFile* source) {
    if (!looked_) {
        openRecords_.Look();
        looked_ = true;
    }
    if (source != nullptr) {
        RefuseWaiting(source->Path(), source->Number(), source->Status());
    }
    const bool samePath = source != nullptr && source->Path() == path;
    if (samePath && source->IsWritable()) { // it need not be opened again
        const std::u16string_view reason =
            ReasonToRefuse(calls_, source->Number(), source->Status());
        if (!reason.empty()) {
            throw FileFailure(kCouldNotWrite, path, reason);
        }
        return std::make_unique<Replacement>(calls_, log_, openRecords_, path, Descriptor(calls_),
                                             source->Status(), source, true);
    }
    FileStatus status;
    OpenedFile opened = OpenTarget(calls_, NativeName(path), status, source);
    if (opened.error == ENOENT) {
        return std::make_unique<Creation>(calls_, log_, path,
                                          source != nullptr ? &source->Status() : nullptr);
    }
    if (opened.error != 0) {
        throw FileFailure(kCouldNotWrite, path, ReasonOf(opened));
    }
    const bool isItself = source != nullptr && status.SameFileAs(source->Status());
    if (samePath && !isItself) {
        throw FileFailure(kCouldNotWrite, path,
                          u"Another program has put another file in its place");
    }
    RefuseWaiting(path, opened.file.Number(), status);
    return std::make_unique<Replacement>(calls_, log_, openRecords_, path, std::move(opened.file),
                                         isItself ? source->Status() : status, source, isItself);
}

void SafeWriter::Settle() noexcept {
    log_.End();
    openRecords_.End();
    looked_ = false;
}

void SafeWriter::RefuseWaiting(std::u16string_view path, int descriptor, const FileStatus& status) {
    static const std::string kNone;
    const std::string& own = log_.File() != nullptr ? log_.File()->Path() : kNone;
    if (openRecords_.Hold(FullPath(NativeName(path)), status, descriptor, own)) {
        throw FileFailure(kCouldNotWrite, path, kWrittenInPart);
    }
}

} // namespace vexmarrow

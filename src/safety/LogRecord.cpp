// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/LogRecord.h"

#include "textio/Checksum.h"

#include <cstring>
#include <filesystem>
#include <system_error>
#include <type_traits>

namespace vexmarrow {
namespace {

// A log is read on the machine that wrote it, so numbers keep their layout in memory.
struct StoredHead {
    std::uint64_t checksum = 0; // of the rest of the head
    std::uint64_t pathSize = 0;
    std::uint64_t temporarySize = 0;
    RecordKind kind = RecordKind::Overwrite;
    FileStatus old;
    std::int64_t begun = 0;
    std::uint64_t keptFrom = 0;
    std::uint64_t oldChecksum = 0;
};
struct StoredTail {
    RecordTail tail;
    std::uint64_t checksum = 0; // of `tail`
};
static_assert(std::is_trivially_copyable_v<StoredHead> && std::is_trivially_copyable_v<StoredTail>);

template <typename Part>
std::string_view BytesOf(const Part& part) {
    return {reinterpret_cast<const char*>(&part), sizeof part};
}

template <typename Part>
bool Read(std::string_view bytes, Part& part) {
    if (bytes.size() < sizeof part) {
        return false;
    }
    std::memcpy(&part, bytes.data(), sizeof part);
    return true;
}

std::uint64_t HeadChecksum(std::string_view head, std::uint64_t salt, std::uint64_t at) {
    return ChecksumOf(head.substr(sizeof(std::uint64_t)), salt + at);
}

std::uint64_t TailChecksum(std::string_view tail, const LogRecord& record) {
    return ChecksumOf(tail.substr(0, sizeof(RecordTail)), record.headChecksum);
}

/// Whether the values of a head are such that offsets computed from them cannot overflow.
bool MakesSense(const RecordHead& head) {
    constexpr std::uint64_t kMost = std::uint64_t{1} << 62U;
    return (head.kind == RecordKind::Overwrite || head.kind == RecordKind::NewFile) &&
           head.keptFrom <= head.old.size && head.old.size < kMost && head.path.starts_with('/') &&
           head.path.find('\0') == std::string::npos;
}

} // namespace

std::uint64_t LogRecord::KeptAt() const {
    return TailAt() + sizeof(StoredTail);
}

std::string FullPath(std::string path) {
    if (path.starts_with('/')) {
        return path;
    }
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error);
    return error ? path : (folder / path).native();
}

void EncodeRecord(LogRecord& record, std::uint64_t salt, std::string& bytes) {
    const RecordHead& head = record.head;
    const StoredHead stored{0,
                            head.path.size(),
                            head.temporaryName.size(),
                            head.kind,
                            head.old,
                            head.begun,
                            head.keptFrom,
                            head.checksum};
    bytes.assign(BytesOf(stored)).append(head.path).append(head.temporaryName);
    record.headSize = bytes.size();
    record.headChecksum = HeadChecksum(bytes, salt, record.at);
    std::memcpy(bytes.data(), &record.headChecksum, sizeof record.headChecksum);
    bytes += static_cast<char>(record.state);
    if (record.tail) {
        bytes.append(EncodeTail(record, *record.tail));
    } else {
        bytes.append(sizeof(StoredTail), '\0');
    }
}

std::string EncodeTail(const LogRecord& record, const RecordTail& tail) {
    StoredTail stored{tail, 0};
    stored.checksum = TailChecksum(BytesOf(stored), record);
    return std::string(BytesOf(stored));
}

std::optional<LogRecord> ParseRecord(std::string_view bytes, std::uint64_t salt, std::uint64_t at) {
    StoredHead stored;
    if (!Read(bytes, stored) || stored.pathSize > kLongestHead ||
        stored.temporarySize > kLongestHead) {
        return std::nullopt;
    }
    LogRecord record;
    record.at = at;
    record.headSize = sizeof stored + stored.pathSize + stored.temporarySize;
    record.headChecksum = stored.checksum;
    if (record.headSize >= bytes.size() ||
        stored.checksum != HeadChecksum(bytes.substr(0, record.headSize), salt, at)) {
        return std::nullopt;
    }
    const std::string_view texts = bytes.substr(sizeof stored);
    record.head = {stored.kind,
                   std::string(texts.substr(0, stored.pathSize)),
                   std::string(texts.substr(stored.pathSize, stored.temporarySize)),
                   stored.old,
                   stored.begun,
                   stored.keptFrom,
                   stored.oldChecksum};
    if (!MakesSense(record.head)) {
        return std::nullopt;
    }
    const auto state = static_cast<RecordState>(bytes[record.headSize]);
    const bool isSettled = state == RecordState::Done || state == RecordState::Closed;
    record.state = isSettled ? state : RecordState::Open;
    const std::string_view rest = bytes.substr(record.headSize + 1);
    if (StoredTail last; Read(rest, last) && last.checksum == TailChecksum(rest, record)) {
        record.tail = last.tail;
    }
    return record;
}

} // namespace vexmarrow

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "safety/RunRecord.h"

#include "textio/Checksum.h"

#include <cstring>
#include <type_traits>

namespace vexmarrow {
namespace {

// Logs are read on the machine that wrote them, so numbers stay as they lie in memory.
struct Head {
    std::uint64_t checksum = 0; // of all that follows it in the head
    std::uint64_t pathSize = 0;
    std::uint64_t passingSize = 0;
    RecordKind kind = RecordKind::Replacement;
    FileStatus old;
    std::int64_t begun = 0;
    std::uint64_t keptFrom = 0;
    std::uint64_t oldChecksum = 0;
};
struct Tail {
    WrittenText written;
    std::uint64_t checksum = 0; // of that
};
static_assert(std::is_trivially_copyable_v<Head> && std::is_trivially_copyable_v<Tail>);

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

std::uint64_t TailChecksum(std::string_view tail, const PlacedRecord& placed) {
    return ChecksumOf(tail.substr(0, sizeof(WrittenText)), placed.headChecksum);
}

/// What a head must say so that all computing with it stays within bounds.
bool MakesSense(const RunRecord& record) {
    constexpr std::uint64_t kMost = std::uint64_t{1} << 62U;
    return (record.kind == RecordKind::Replacement || record.kind == RecordKind::Creation) &&
           record.keptFrom <= record.old.size && record.old.size < kMost &&
           record.path.starts_with('/') && record.path.find('\0') == std::string::npos;
}

} // namespace

std::uint64_t PlacedRecord::KeptAt() const {
    return TailAt() + sizeof(Tail);
}

void EncodeRecord(PlacedRecord& placed, std::uint64_t salt, std::string& bytes) {
    const RunRecord& record = placed.record;
    const Head head{0,          record.path.size(), record.passingName.size(), record.kind,
                    record.old, record.begun,       record.keptFrom,           record.checksum};
    bytes.assign(BytesOf(head)).append(record.path).append(record.passingName);
    placed.headSize = bytes.size();
    placed.headChecksum = HeadChecksum(bytes, salt, placed.at);
    std::memcpy(bytes.data(), &placed.headChecksum, sizeof placed.headChecksum);
    bytes += static_cast<char>(placed.state);
    if (placed.written) {
        bytes.append(EncodeTail(placed, *placed.written));
    } else {
        bytes.append(sizeof(Tail), '\0');
    }
}

std::string EncodeTail(const PlacedRecord& placed, const WrittenText& written) {
    Tail tail{written, 0};
    tail.checksum = TailChecksum(BytesOf(tail), placed);
    return std::string(BytesOf(tail));
}

std::optional<PlacedRecord> ParseRecord(std::string_view bytes, std::uint64_t salt,
                                        std::uint64_t at) {
    Head head;
    if (!Read(bytes, head) || head.pathSize > kLongestHead || head.passingSize > kLongestHead) {
        return std::nullopt;
    }
    PlacedRecord placed;
    placed.at = at;
    placed.headSize = sizeof head + head.pathSize + head.passingSize;
    placed.headChecksum = head.checksum;
    if (placed.headSize >= bytes.size() ||
        head.checksum != HeadChecksum(bytes.substr(0, placed.headSize), salt, at)) {
        return std::nullopt;
    }
    const std::string_view texts = bytes.substr(sizeof head);
    placed.record = {head.kind,
                     std::string(texts.substr(0, head.pathSize)),
                     std::string(texts.substr(head.pathSize, head.passingSize)),
                     head.old,
                     head.begun,
                     head.keptFrom,
                     head.oldChecksum};
    if (!MakesSense(placed.record)) {
        return std::nullopt;
    }
    const auto state = static_cast<RecordState>(bytes[placed.headSize]);
    const bool isSettled = state == RecordState::Done || state == RecordState::Closed;
    placed.state = isSettled ? state : RecordState::Open;
    const std::string_view rest = bytes.substr(placed.headSize + 1);
    if (Tail tail; Read(rest, tail) && tail.checksum == TailChecksum(rest, placed)) {
        placed.written = tail.written;
    }
    return placed;
}

} // namespace vexmarrow

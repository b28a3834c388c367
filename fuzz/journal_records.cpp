// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "fuzz/Fuzz.h"
#include "journal/JournalRecord.h"

#include <cstring>

// The beginning of a journal. Nearly all bytes are no header, so what an input holds is also made
// into one: a record with these values, which must come back, and fields under a right checksum.

namespace vexmarrow::fuzz {
namespace {

constexpr std::size_t kFieldsAt = 32; // after mark, version, size and checksum

std::uint64_t Number(Input& input) {
    std::uint64_t number = 0;
    const std::string_view bytes = input.Bytes(1 + input.Byte() % sizeof number);
    std::memcpy(&number, bytes.data(), bytes.size());
    return number;
}

/// What recovery relies on in a header that it takes for whole.
void RequireSense(const ParsedHeader& parsed, std::size_t size) {
    if (parsed.state == HeaderState::Whole) {
        const JournalRecord& record = parsed.record;
        Require(parsed.payloadOffset <= size, "the payload begins after what was looked at");
        Require(record.base + record.payloadSize >= record.base, "the size can be computed");
        Require(record.base <= record.target.size, "new bytes begin within the file");
        Require(!record.path.empty() && record.path.find('\0') == std::string::npos, "a real path");
    }
}

std::string WithRightChecksum(std::string_view fields) {
    std::string bytes = EncodeHeader({}).substr(0, kFieldsAt).append(fields);
    const std::uint64_t numbers[] = {bytes.size(), ChecksumOf(fields)};
    std::memcpy(bytes.data() + 16, numbers, sizeof numbers);
    return bytes;
}

JournalRecord MakeRecord(Input input) {
    JournalRecord record;
    record.kind = input.Byte() % 2 == 0 ? RecordKind::Replacement : RecordKind::Creation;
    record.target.mode = static_cast<mode_t>(Number(input));
    record.target.device = Number(input);
    record.target.inode = Number(input);
    record.target.modified = static_cast<std::int64_t>(Number(input));
    record.target.born = static_cast<std::int64_t>(Number(input));
    record.begun = static_cast<std::int64_t>(Number(input));
    record.target.size = Number(input) >> 2; // so that the sum of both fits
    record.base = record.target.size == 0 ? 0 : Number(input) % record.target.size;
    record.payloadSize = Number(input) >> 2;
    record.payloadChecksum = Number(input);
    record.machine = input.Bytes(input.Byte());
    record.path = "/" + std::string(input.Rest().substr(0, input.Rest().find('\0')));
    return record;
}

void TryRecord(const JournalRecord& record, std::uint8_t where, std::uint8_t change) {
    std::string bytes = EncodeHeader(record);
    const ParsedHeader parsed = ParseHeader(bytes + "payload");
    Require(parsed.state == HeaderState::Whole && parsed.payloadOffset == bytes.size(),
            "what was encoded is whole");
    Require(EncodeHeader(parsed.record) == bytes, "no value is lost");
    Require(ParseHeader(bytes.substr(0, bytes.size() - 1)).state != HeaderState::Whole,
            "a header that was cut is not whole");
    const std::size_t at = where % bytes.size();
    bytes[at] = static_cast<char>(bytes[at] ^ (change == 0 ? 1 : change));
    Require(ParseHeader(bytes).state != HeaderState::Whole ||
                (at >= kRecordMark.size() && at < 16), // an older version has the same form
            "a header with a byte changed is not whole");
}

} // namespace

void TryInput(Input input) {
    RequireSense(ParseHeader(input.Rest()), input.Rest().size());
    const std::string checked = WithRightChecksum(input.Rest());
    RequireSense(ParseHeader(checked), checked.size());
    const std::uint8_t where = input.Byte();
    const std::uint8_t change = input.Byte();
    TryRecord(MakeRecord(input), where, change);
}

} // namespace vexmarrow::fuzz

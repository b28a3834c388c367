// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "fuzz/Fuzz.h"
#include "safety/LogRecord.h"
#include "textio/Checksum.h"

#include <cstring>
#include <tuple>

// The records of a log. Hardly any bytes are a record, so the input is also made into a record,
// which must be read back, and into one with a changed head and a right checksum.

namespace vexmarrow::fuzz {
namespace {

std::string Encoded(LogRecord& record, std::uint64_t salt) {
    std::string bytes;
    EncodeRecord(record, salt, bytes);
    return bytes;
}

constexpr const char* kLost = "no value is lost";

std::uint64_t Number(Input& input) {
    std::uint64_t number = 0;
    const std::string_view bytes = input.Bytes(input.Byte() % (1 + sizeof number));
    std::memcpy(&number, bytes.data(), bytes.size());
    return number;
}

FileStatus MakeFile(Input& input) {
    FileStatus file;
    file.device = Number(input);
    file.inode = Number(input);
    file.born = static_cast<std::int64_t>(Number(input));
    return file;
}

LogRecord MakeRecord(Input& input, std::uint64_t at) {
    LogRecord record;
    record.at = at;
    record.head.old = MakeFile(input);
    record.head.old.size = Number(input) >> 2U; // so that sums fit
    record.head.old.modified = static_cast<std::int64_t>(Number(input));
    record.head.begun = static_cast<std::int64_t>(Number(input));
    record.head.keptFrom = Number(input) % (record.head.old.size + 1);
    record.head.checksum = Number(input);
    record.head.kind = input.Byte() % 2 == 0 ? RecordKind::Overwrite : RecordKind::NewFile;
    record.state = static_cast<RecordState>(1 + input.Byte() % 3);
    if (input.Byte() % 2 == 0) {
        record.tail = RecordTail{Number(input), Number(input), {}};
        record.tail->file = MakeFile(input);
    }
    record.head.temporaryName = input.Bytes(input.Byte() % 64);
    const std::string_view path = input.Bytes(input.Byte());
    record.head.path.append("/").append(path.substr(0, path.find('\0')));
    return record;
}

auto ValuesOf(const RecordHead& head) {
    return std::tie(head.kind, head.path, head.temporaryName, head.old.device, head.old.inode,
                    head.old.born, head.old.size, head.old.modified, head.begun, head.keptFrom,
                    head.checksum);
}

bool HoldSame(const std::optional<RecordTail>& a, const std::optional<RecordTail>& b) {
    return a.has_value() == b.has_value() &&
           (!a ||
            (a->size == b->size && a->checksum == b->checksum && a->file.SameFileAs(b->file)));
}

/// Requires what all code that uses a record relies on.
void RequireSense(const std::optional<LogRecord>& parsed, std::uint64_t at, std::size_t size) {
    if (parsed) {
        const RecordHead& head = parsed->head;
        Require(parsed->at == at && parsed->headSize < size,
                "a record lies where it was looked at");
        Require(head.keptFrom <= head.old.size, "what is kept lies within the old text");
        Require(parsed->KeptAt() > at && parsed->End() >= parsed->KeptAt() &&
                    parsed->End() - parsed->KeptAt() == head.KeptSize(),
                "the end of a record can be computed");
        Require(head.path.starts_with('/') && head.path.find('\0') == std::string::npos,
                "a path is absolute");
        Require(static_cast<unsigned>(parsed->state) - 1U < 3U, "a state is one of the three");
    }
}

void TryWhole(LogRecord record, std::uint64_t salt, std::uint64_t other) {
    const std::string bytes = Encoded(record, salt);
    const auto parsed = ParseRecord(bytes + "old bytes", salt, record.at);
    RequireSense(parsed, record.at, bytes.size());
    Require(parsed && parsed->KeptAt() == record.at + bytes.size(), "an encoded record is whole");
    Require(ValuesOf(parsed->head) == ValuesOf(record.head), kLost);
    Require(parsed->state == record.state && HoldSame(parsed->tail, record.tail), kLost);
    Require(!ParseRecord(bytes, salt ^ other, record.at), "a record of another log is none");
    Require(!ParseRecord(bytes, salt, record.at ^ other), "a record of another place is none");

    const std::size_t tailAt = record.headSize + 1;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto cut = ParseRecord(std::string_view(bytes).substr(0, i), salt, record.at);
        Require(cut.has_value() == (i > record.headSize), "a head that was cut is none");
        Require(!cut || !cut->tail, "a tail that was cut is none");
        std::string changed = bytes;
        changed[i] = static_cast<char>(changed[i] ^ static_cast<char>(1 + other % 255));
        const auto read = ParseRecord(changed, salt, record.at);
        Require(read.has_value() == (i >= record.headSize), "a head that was changed is none");
        Require(!read || i < tailAt || !read->tail, "a tail that was changed is none");
        RequireSense(read, record.at, bytes.size());
    }
    // A tail comes later, and not from another record.
    const RecordTail written{salt, other, record.head.old};
    const std::string tail = EncodeTail(*parsed, written);
    Require(tail.size() == bytes.size() - tailAt, "there is room for a tail");
    const auto complete = ParseRecord(bytes.substr(0, tailAt) + tail, salt, record.at);
    Require(complete && HoldSame(complete->tail, written), kLost);
    record.head.begun ^= 1;
    const auto stranger =
        ParseRecord(Encoded(record, salt).substr(0, tailAt) + tail, salt, record.at);
    Require(stranger && !stranger->tail, "a tail belongs to its head");
}

/// Bytes of the head are changed, as the input says, and the checksum is made right again.
void TryForged(LogRecord record, std::uint64_t salt, Input input) {
    std::string bytes = Encoded(record, salt);
    for (int left = input.Byte() % 16; left > 0; --left) {
        const std::size_t place = input.Byte();
        bytes[place % record.headSize] = static_cast<char>(input.Byte());
    }
    std::uint64_t sizes[2]; // the sizes of both names follow the checksum
    std::memcpy(sizes, bytes.data() + sizeof(std::uint64_t), sizeof sizes);
    const std::size_t others =
        record.headSize - record.head.path.size() - record.head.temporaryName.size();
    const std::size_t size =
        others + std::min(sizes[0], bytes.size()) + std::min(sizes[1], bytes.size());
    const std::uint64_t checksum = ChecksumOf(
        std::string_view(bytes).substr(0, size).substr(sizeof(std::uint64_t)), salt + record.at);
    std::memcpy(bytes.data(), &checksum, sizeof checksum);
    RequireSense(ParseRecord(bytes, salt, record.at), record.at, bytes.size());
}

} // namespace

void TryInput(Input input) {
    const std::uint64_t salt = Number(input);
    const std::uint64_t at = Number(input) >> 2U;
    const std::uint64_t other = Number(input) | 1U;
    RequireSense(ParseRecord(input.Rest(), salt, at), at, input.Rest().size());
    const LogRecord record = MakeRecord(input, at);
    TryWhole(record, salt, other);
    TryForged(record, salt, input);
}

} // namespace vexmarrow::fuzz

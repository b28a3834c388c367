// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "fuzz/Fuzz.h"
#include "safety/RunRecord.h"
#include "textio/Checksum.h"

#include <cstring>
#include <tuple>

// The records of a log. Nearly all bytes are none, so what an input holds is also made into one,
// which must come back; and into one whose head says anything under a right checksum.

namespace vexmarrow::fuzz {
namespace {

std::string Encoded(PlacedRecord& placed, std::uint64_t salt) {
    std::string bytes;
    EncodeRecord(placed, salt, bytes);
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

PlacedRecord MakeRecord(Input& input, std::uint64_t at) {
    PlacedRecord placed;
    placed.at = at;
    placed.record.old = MakeFile(input);
    placed.record.old.size = Number(input) >> 2U; // so that sums fit
    placed.record.old.modified = static_cast<std::int64_t>(Number(input));
    placed.record.begun = static_cast<std::int64_t>(Number(input));
    placed.record.keptFrom = Number(input) % (placed.record.old.size + 1);
    placed.record.checksum = Number(input);
    placed.record.kind = input.Byte() % 2 == 0 ? RecordKind::Replacement : RecordKind::Creation;
    placed.state = static_cast<RecordState>(1 + input.Byte() % 3);
    if (input.Byte() % 2 == 0) {
        placed.written = WrittenText{Number(input), Number(input), {}};
        placed.written->file = MakeFile(input);
    }
    placed.record.passingName = input.Bytes(input.Byte() % 64);
    const std::string_view path = input.Bytes(input.Byte());
    placed.record.path.append("/").append(path.substr(0, path.find('\0')));
    return placed;
}

auto ValuesOf(const RunRecord& record) {
    return std::tie(record.kind, record.path, record.passingName, record.old.device,
                    record.old.inode, record.old.born, record.old.size, record.old.modified,
                    record.begun, record.keptFrom, record.checksum);
}

bool HoldSame(const std::optional<WrittenText>& a, const std::optional<WrittenText>& b) {
    return a.has_value() == b.has_value() &&
           (!a ||
            (a->size == b->size && a->checksum == b->checksum && a->file.SameFileAs(b->file)));
}

/// What whoever works with a record relies on.
void RequireSense(const std::optional<PlacedRecord>& parsed, std::uint64_t at, std::size_t size) {
    if (parsed) {
        const RunRecord& record = parsed->record;
        Require(parsed->at == at && parsed->headSize < size,
                "a record lies where it was looked at");
        Require(record.keptFrom <= record.old.size, "what is kept lies within the old text");
        Require(parsed->KeptAt() > at && parsed->End() >= parsed->KeptAt() &&
                    parsed->End() - parsed->KeptAt() == record.KeptSize(),
                "the end of a record can be computed");
        Require(record.path.starts_with('/') && record.path.find('\0') == std::string::npos,
                "a full path");
        Require(static_cast<unsigned>(parsed->state) - 1U < 3U, "one of the three states");
    }
}

void TryWhole(PlacedRecord placed, std::uint64_t salt, std::uint64_t other) {
    const std::string bytes = Encoded(placed, salt);
    const auto parsed = ParseRecord(bytes + "old bytes", salt, placed.at);
    RequireSense(parsed, placed.at, bytes.size());
    Require(parsed && parsed->KeptAt() == placed.at + bytes.size(), "what was encoded is whole");
    Require(ValuesOf(parsed->record) == ValuesOf(placed.record), kLost);
    Require(parsed->state == placed.state && HoldSame(parsed->written, placed.written), kLost);
    Require(!ParseRecord(bytes, salt ^ other, placed.at), "none of another log");
    Require(!ParseRecord(bytes, salt, placed.at ^ other), "none of another place");

    const std::size_t tailAt = placed.headSize + 1;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto cut = ParseRecord(std::string_view(bytes).substr(0, i), salt, placed.at);
        Require(cut.has_value() == (i > placed.headSize), "a head that was cut is none");
        Require(!cut || !cut->written, "a tail that was cut is none");
        std::string changed = bytes;
        changed[i] = static_cast<char>(changed[i] ^ static_cast<char>(1 + other % 255));
        const auto read = ParseRecord(changed, salt, placed.at);
        Require(read.has_value() == (i >= placed.headSize), "a head that was changed is none");
        Require(!read || i < tailAt || !read->written, "a tail that was changed is none");
        RequireSense(read, placed.at, bytes.size());
    }
    // A tail comes later, and not from another record.
    const WrittenText written{salt, other, placed.record.old};
    const std::string tail = EncodeTail(*parsed, written);
    Require(tail.size() == bytes.size() - tailAt, "there is room for a tail");
    const auto complete = ParseRecord(bytes.substr(0, tailAt) + tail, salt, placed.at);
    Require(complete && HoldSame(complete->written, written), kLost);
    placed.record.begun ^= 1;
    const auto stranger =
        ParseRecord(Encoded(placed, salt).substr(0, tailAt) + tail, salt, placed.at);
    Require(stranger && !stranger->written, "a tail belongs to its head");
}

/// Bytes of the head are changed, as the input says, and the checksum is made right again.
void TryForged(PlacedRecord placed, std::uint64_t salt, Input input) {
    std::string bytes = Encoded(placed, salt);
    for (int left = input.Byte() % 16; left > 0; --left) {
        const std::size_t place = input.Byte();
        bytes[place % placed.headSize] = static_cast<char>(input.Byte());
    }
    std::uint64_t sizes[2]; // of both names, which follow the checksum
    std::memcpy(sizes, bytes.data() + sizeof(std::uint64_t), sizeof sizes);
    const std::size_t others =
        placed.headSize - placed.record.path.size() - placed.record.passingName.size();
    const std::size_t size =
        others + std::min(sizes[0], bytes.size()) + std::min(sizes[1], bytes.size());
    const std::uint64_t checksum = ChecksumOf(
        std::string_view(bytes).substr(0, size).substr(sizeof(std::uint64_t)), salt + placed.at);
    std::memcpy(bytes.data(), &checksum, sizeof checksum);
    RequireSense(ParseRecord(bytes, salt, placed.at), placed.at, bytes.size());
}

} // namespace

void TryInput(Input input) {
    const std::uint64_t salt = Number(input);
    const std::uint64_t at = Number(input) >> 2U;
    const std::uint64_t other = Number(input) | 1U;
    RequireSense(ParseRecord(input.Rest(), salt, at), at, input.Rest().size());
    const PlacedRecord placed = MakeRecord(input, at);
    TryWhole(placed, salt, other);
    TryForged(placed, salt, input);
}

} // namespace vexmarrow::fuzz

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "journal/JournalRecord.h"

#include <array>
#include <cstring>
#include <limits>
#include <new>
#include <xxhash.h>

namespace vexmarrow {
namespace {

constexpr std::uint64_t kVersion = 1;

// Mark, version, size of the header, checksum of all of the header that follows it.
constexpr std::size_t kNumberSize = sizeof(std::uint64_t);
constexpr std::size_t kSizeAt = 2 * kNumberSize;
constexpr std::size_t kChecksumAt = 3 * kNumberSize;
constexpr std::size_t kFieldsAt = 4 * kNumberSize;

// Journals are read on the machine that wrote them, so numbers stay in its byte order.
void PutNumber(std::string& bytes, std::uint64_t number) {
    std::array<char, kNumberSize> raw{};
    std::memcpy(raw.data(), &number, raw.size());
    bytes.append(raw.data(), raw.size());
}

std::uint64_t NumberAt(std::string_view bytes, std::size_t at) {
    std::uint64_t number = 0;
    std::memcpy(&number, bytes.data() + at, kNumberSize);
    return number;
}

void PutText(std::string& bytes, std::string_view text) {
    PutNumber(bytes, text.size());
    bytes += text;
}

/// Takes the fields of a header one after another; remembers when there were too few bytes.
class Fields {
public:
    explicit Fields(std::string_view bytes) : left_(bytes) {}

    std::uint64_t Number() {
        if (left_.size() < kNumberSize) {
            return Fail();
        }
        const std::uint64_t number = NumberAt(left_, 0);
        left_.remove_prefix(kNumberSize);
        return number;
    }
    std::int64_t Time() { return static_cast<std::int64_t>(Number()); }
    std::string Text() {
        const std::uint64_t size = Number();
        if (size > left_.size()) {
            Fail();
            return {};
        }
        std::string text(left_.substr(0, size));
        left_.remove_prefix(size);
        return text;
    }
    bool WasEnough() const { return !failed_ && left_.empty(); }

private:
    std::uint64_t Fail() {
        failed_ = true;
        left_ = {};
        return 0;
    }

    std::string_view left_;
    bool failed_ = false;
};

XXH3_state_t* StateOf(void* state) {
    return static_cast<XXH3_state_t*>(state);
}

bool MakesSense(const JournalRecord& record) {
    constexpr std::uint64_t kLargestFile = std::numeric_limits<std::int64_t>::max();
    const bool known =
        record.kind == RecordKind::Replacement || record.kind == RecordKind::Creation;
    return known && !record.path.empty() && record.path.find('\0') == std::string::npos &&
           record.target.size <= kLargestFile && record.base <= record.target.size &&
           record.payloadSize <= kLargestFile - record.base;
}

} // namespace

std::string EncodeHeader(const JournalRecord& record) {
    std::string bytes(kRecordMark);
    PutNumber(bytes, kVersion);
    PutNumber(bytes, 0); // size and checksum follow below
    PutNumber(bytes, 0);
    PutNumber(bytes, static_cast<std::uint64_t>(record.kind));
    PutNumber(bytes, record.target.mode);
    PutNumber(bytes, record.target.device);
    PutNumber(bytes, record.target.inode);
    PutNumber(bytes, record.target.size);
    PutNumber(bytes, static_cast<std::uint64_t>(record.target.modified));
    PutNumber(bytes, static_cast<std::uint64_t>(record.target.born));
    PutNumber(bytes, static_cast<std::uint64_t>(record.begun));
    PutNumber(bytes, record.base);
    PutNumber(bytes, record.payloadSize);
    PutNumber(bytes, record.payloadChecksum);
    PutText(bytes, record.machine);
    PutText(bytes, record.path);

    const std::uint64_t size = bytes.size();
    std::memcpy(bytes.data() + kSizeAt, &size, kNumberSize);
    const std::uint64_t checksum = ChecksumOf(std::string_view(bytes).substr(kFieldsAt));
    std::memcpy(bytes.data() + kChecksumAt, &checksum, kNumberSize);
    return bytes;
}

ParsedHeader ParseHeader(std::string_view bytes) {
    ParsedHeader parsed;
    if (bytes.empty() || bytes.starts_with(kNoRecord)) {
        return parsed;
    }
    parsed.state = HeaderState::Damaged;
    if (!bytes.starts_with(kRecordMark) || bytes.size() < kFieldsAt) {
        return parsed;
    }
    if (NumberAt(bytes, kRecordMark.size()) > kVersion) {
        parsed.state = HeaderState::Foreign;
        return parsed;
    }
    const std::uint64_t size = NumberAt(bytes, kSizeAt);
    if (size < kFieldsAt || size > bytes.size()) {
        return parsed;
    }
    const std::string_view rest = bytes.substr(kFieldsAt, size - kFieldsAt);
    if (ChecksumOf(rest) != NumberAt(bytes, kChecksumAt)) {
        return parsed;
    }
    Fields fields(rest);
    JournalRecord& record = parsed.record;
    record.kind = static_cast<RecordKind>(fields.Number());
    record.target.mode = static_cast<mode_t>(fields.Number());
    record.target.device = fields.Number();
    record.target.inode = fields.Number();
    record.target.size = fields.Number();
    record.target.modified = fields.Time();
    record.target.born = fields.Time();
    record.begun = fields.Time();
    record.base = fields.Number();
    record.payloadSize = fields.Number();
    record.payloadChecksum = fields.Number();
    record.machine = fields.Text();
    record.path = fields.Text();
    if (fields.WasEnough() && MakesSense(record)) {
        parsed.state = HeaderState::Whole;
        parsed.payloadOffset = size;
    }
    return parsed;
}

std::uint64_t ChecksumOf(std::string_view bytes) {
    return XXH3_64bits(bytes.data(), bytes.size());
}

Checksum::Checksum() : state_(XXH3_createState()) {
    if (state_ == nullptr) {
        throw std::bad_alloc();
    }
    Restart();
}

Checksum::~Checksum() {
    XXH3_freeState(StateOf(state_));
}

void Checksum::Restart() {
    XXH3_64bits_reset(StateOf(state_));
}

void Checksum::Add(std::string_view bytes) {
    XXH3_64bits_update(StateOf(state_), bytes.data(), bytes.size());
}

std::uint64_t Checksum::Value() const {
    return XXH3_64bits_digest(StateOf(state_));
}

} // namespace vexmarrow

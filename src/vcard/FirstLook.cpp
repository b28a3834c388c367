// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/FirstLook.h"

#include "base/Utf8.h"
#include "vcard/PlainLines.h"
#include "vcard/Units.h"

#include <algorithm>
#include <string>

namespace vexmarrow::vcard {
namespace {

/// A part of a value that is not searched, without its folds: they may lie within characters.
std::string_view Unfolded(const RawLine& line, std::string& room) {
    if (AsciiLength(line.raw) == line.raw.size()) {
        return line.raw;
    }
    room.clear();
    for (PhysicalLine physical; physical.next < line.raw.size();) {
        physical.Find(line.raw, true, physical.next);
        const std::string_view content = physical.In(line.raw);
        const bool isFolded = physical.begin > 0 && line.context.version == Version::Later &&
                              !content.empty() && IsBlank(content.front());
        room.append(content.substr(isFolded ? 1 : 0));
    }
    return room;
}

/// The part of a line that is in the encoding of its file.
std::string_view InFileEncoding(const RawLine& line, std::string& room) {
    if (line.isPassedValue) {
        return line.context.hasCharset ? std::string_view() : Unfolded(line, room);
    }
    if (!line.context.hasCharset) {
        return line.joined;
    }
    return line.begins ? line.joined.substr(0, line.header.colon + 1) : std::string_view();
}

void Count(std::string_view bytes, FirstLook& look) {
    for (;;) {
        bytes.remove_prefix(AsciiLength(bytes));
        if (bytes.empty()) {
            return;
        }
        const Unit unit = WellFormedAt(bytes, 0);
        ++(unit.value < kStray ? look.characters : look.strayBytes);
        bytes.remove_prefix(unit.length);
    }
}

/// Finds nothing.
class NoFinder final : public PairFinder {
public:
    std::size_t FirstFound(std::string_view /*text*/, std::size_t /*least*/) const override {
        return kNone;
    }
    void FindPlaces(std::string_view /*text*/,
                    std::vector<std::size_t>& /*places*/) const override {}
};

} // namespace

FirstLook LookAt(FileText& text, LineReader::CharsetsByName& charsets, bool hasMark) {
    FirstLook look;
    LineReader reader(text, charsets, hasMark);
    const NoFinder finder;
    PlainLines plain(reader.Cards(), finder, true, hasMark);
    std::string room;
    for (RawLine line;;) {
        Count(reader.NextPlain(plain), look);
        if (!reader.Next(line)) {
            return look;
        }
        Count(InFileEncoding(line, room), look);
        if (line.isFolded && line.context.coding != Coding::Base64) {
            look.isFolded.resize(std::max(look.isFolded.size(), line.context.card + 1));
            look.isFolded[line.context.card] = true;
        }
    }
}

} // namespace vexmarrow::vcard

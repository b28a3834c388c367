// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/FileSurvey.h"

#include "base/Utf8.h"
#include "vcard/Ascii.h"
#include "vcard/LineReader.h"
#include "vcard/LineSkimmer.h"
#include "vcard/Units.h"

#include <algorithm>
#include <string>

namespace vexmarrow::vcard {
namespace {

/// A part of a value that is not searched, without the folds, which may cut characters.
std::string_view Unfolded(const RawLine& line, std::string& room) {
    if (AsciiLength(line.raw) == line.raw.size()) {
        return line.raw;
    }
    room.clear();
    for (PhysicalLine physical; physical.next < line.raw.size();) {
        physical.Find({line.raw, true}, physical.next);
        const std::string_view content = physical.In(line.raw);
        const bool isFolded = physical.begin > 0 && line.context.version == Version::Later &&
                              BeginsWithBlank(content);
        room.append(content.substr(isFolded ? 1 : 0));
    }
    return room;
}

/// The bytes of a line that are in the encoding of the file.
std::string_view InFileEncoding(const RawLine& line, std::string& room) {
    if (line.isUnsearched) {
        return line.context.hasCharset ? std::string_view() : Unfolded(line, room);
    }
    if (!line.context.hasCharset) {
        return line.joined;
    }
    return line.begins ? line.joined.substr(0, line.header.colon + 1) : std::string_view();
}

void Count(std::string_view bytes, FileSurvey& survey) {
    for (;;) {
        bytes.remove_prefix(AsciiLength(bytes));
        if (bytes.empty()) {
            return;
        }
        const Unit unit = Utf8UnitAt(bytes, 0);
        ++(unit.value < kStray ? survey.characters : survey.strayBytes);
        bytes.remove_prefix(unit.length);
    }
}

} // namespace

FileSurvey SurveyFile(TextSource& text, Charsets& charsets, bool hasMark) {
    FileSurvey survey;
    LineReader reader(text, charsets, hasMark);
    LineSkimmer skimmer(reader.Cards(), nullptr, true, hasMark);
    std::string room;
    for (RawLine line;;) {
        Count(reader.Skim(skimmer), survey);
        if (!reader.Next(line)) {
            return survey;
        }
        Count(InFileEncoding(line, room), survey);
        if (line.isFolded && line.context.coding != Coding::Base64) {
            survey.isFolded.resize(std::max(survey.isFolded.size(), line.context.card + 1));
            survey.isFolded[line.context.card] = true;
        }
    }
}

} // namespace vexmarrow::vcard

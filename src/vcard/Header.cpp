// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/Header.h"

#include "vcard/Ascii.h"

namespace vexmarrow::vcard {
namespace {

bool IsNameLetter(char byte) {
    return IsLetterOrDigit(byte) || byte == '-' || byte == '_';
}

std::size_t EndOfName(std::string_view line, std::size_t from) {
    while (from < line.size() && IsNameLetter(line[from])) {
        ++from;
    }
    return from;
}

/// Where the quoted text that begins at a place ends; the place itself if the quote opens none.
std::size_t EndOfQuoted(std::string_view line, std::size_t begin, bool& isOpen) {
    const char before = line[begin - 1];
    if (before != '=' && before != ',') {
        return begin;
    }
    const std::size_t close = line.find('"', begin + 1);
    if (close == std::string_view::npos || close + 1 == line.size()) {
        isOpen = true;
        return begin;
    }
    const char after = line[close + 1];
    return after == ';' || after == ',' || after == ':' ? close : begin;
}

/// Where the parameter that begins at a place ends: at a semicolon or at the separating colon.
std::size_t EndOfParameter(std::string_view line, std::size_t begin, Version version,
                           bool& isOpen) {
    for (std::size_t at = begin; at < line.size(); ++at) {
        if (line[at] == ';' || line[at] == ':') {
            return at;
        }
        if (line[at] == '"' && version == Version::Later) {
            at = EndOfQuoted(line, at, isOpen);
        }
    }
    return std::string_view::npos;
}

std::string_view WithoutQuotes(std::string_view value) {
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
        value = value.substr(1, value.size() - 2);
    }
    return value;
}

void TakeParameter(std::string_view parameter, Header& header) {
    const std::size_t equals = parameter.find('=');
    const bool isBare = equals == std::string_view::npos;
    const std::string_view name = isBare ? "" : WithoutBlanks(parameter.substr(0, equals));
    const std::string_view value =
        WithoutQuotes(WithoutBlanks(isBare ? parameter : parameter.substr(equals + 1)));
    if (isBare || IsWord(name, "encoding")) {
        if (IsWord(value, "b") || IsWord(value, "base64")) {
            header.coding = Coding::Base64;
        } else if (IsWord(value, "quoted-printable") && header.coding == Coding::Plain) {
            header.coding = Coding::QuotedPrintable;
        }
    } else if (IsWord(name, "charset") && !header.hasCharset) {
        header.hasCharset = true;
        header.charset = value;
    }
}

} // namespace

Header ReadHeader(std::string_view line, Version version) {
    std::size_t begin = 0;
    std::size_t end = EndOfName(line, 0);
    if (end > 0 && end < line.size() && line[end] == '.') {
        begin = end + 1;
        end = EndOfName(line, begin);
    }
    Header header;
    if (end == begin || end == line.size() || (line[end] != ';' && line[end] != ':')) {
        return header;
    }
    const std::string_view name = line.substr(begin, end - begin);
    header.isAgent = IsWord(name, "agent");
    header.mayBeBinary = IsWord(name, "photo") || IsWord(name, "logo") || IsWord(name, "sound") ||
                         IsWord(name, "key");
    while (line[end] == ';') {
        begin = end + 1;
        end = EndOfParameter(line, begin, version, header.hasOpenQuote);
        if (end == std::string_view::npos) {
            header.isUnfinished = true;
            return header;
        }
        TakeParameter(line.substr(begin, end - begin), header);
    }
    header.colon = end;
    return header;
}

bool IsEmptyAgent(std::string_view line, const Header& header) {
    return header.colon != Header::kNone && header.isAgent &&
           WithoutBlanks(line.substr(header.colon + 1)).empty();
}

} // namespace vexmarrow::vcard

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/CardPairs.h"
#include "engine/Cascade.h"
#include "textio/TextReaders.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vexmarrow {

class AnsiCodePage;
class CodePage;
class PreparedPairs;

/// Replaces bytes in texts of a code page. The result is the same as after decoding the text,
/// replacing characters and encoding it again.
class ByteCascade {
public:
    using View = std::string_view;

    /// `bytes` are the pairs of `pairs`, which must outlive this object, in the code page.
    ByteCascade(const CodePage& page, std::vector<BasicReplacementPair<char>> bytes,
                PreparedPairs& pairs)
        : page_(page), several_(bytes.size() > 1), bytes_(std::move(bytes)), pairs_(pairs) {}

    /// As BasicCascade does.
    bool Apply(View text, std::string& result) const;

private:
    const CodePage& page_;
    bool several_; // a pair can find what another one has made
    BasicCascade<char> bytes_;
    PreparedPairs& pairs_;
};

/// Replaces bytes in well-formed UTF-8. The result is the same as for its characters.
class Utf8Cascade {
public:
    using View = std::string_view;

    explicit Utf8Cascade(std::vector<BasicReplacementPair<char>> pairs);

    /// As BasicCascade does.
    bool Apply(View text, std::string& result) const { return bytes_->Apply(text, result); }

    /// Characters that no find text contains. No match extends over one, so the parts between them
    /// may be changed separately (docs/CASCADE.md).
    const AsciiSet& Borders() const { return borders_; }

private:
    AsciiSet borders_;
    std::optional<BasicCascade<char>> bytes_;
};

/// Replaces in wide text (base/Utf8.h) with a pass for each pair, because pairs that contain half a
/// character or a stray byte are rare.
class WideCascade {
public:
    using View = std::u32string_view;

    explicit WideCascade(const std::vector<ReplacementPair>& pairs);

    /// As BasicCascade does.
    bool Apply(View text, std::u32string& result) const;

private:
    std::vector<BasicReplacementPair<char32_t>> pairs_;
};

/// Pairs of find and replace texts, prepared for many files in all kinds of encoding.
class PreparedPairs {
public:
    /// Find text i is replaced with replace text i.
    PreparedPairs(std::span<const std::u16string> find, std::span<const std::u16string> replace);
    PreparedPairs(const PreparedPairs&) = delete;
    PreparedPairs& operator=(const PreparedPairs&) = delete;
    ~PreparedPairs() = default;

    /// A message for each find text without a replace text. These make no pair.
    const std::vector<std::u16string>& Partnerless() const { return partnerless_; }

    const BasicCascade<char16_t>& OfCharacters();

    /// The cascade for bytes of the code page. Null when a pair contains a character that the page
    /// lacks, or half a character: a pair may insert it, and a later pair must find it.
    const ByteCascade* OfBytes(const AnsiCodePage& ansi);

    /// The cascade for UTF-8. Null when a pair contains half a character.
    const Utf8Cascade* OfUtf8();

    const WideCascade& OfWideText();

    const vcard::Pairs& OfCards();

private:
    std::vector<ReplacementPair> pairs_;
    std::vector<std::u16string> partnerless_;
    std::optional<BasicCascade<char16_t>> ofCharacters_;
    std::optional<ByteCascade> ofBytes_;
    bool askedForBytes_ = false;
    std::uint64_t codePage_ = 0; // the revision of the page that ofBytes_ was made for
    std::optional<Utf8Cascade> ofUtf8_;
    bool askedForUtf8_ = false;
    std::optional<WideCascade> ofWideText_;
    std::optional<CardPairs> ofCards_;
};

} // namespace vexmarrow

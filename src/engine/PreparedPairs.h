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

/// Replaces the bytes of texts in a code page, with the same result as decoding them, replacing
/// characters and encoding them again.
class ByteCascade {
public:
    using View = std::string_view;

    /// `bytes` are those of `pairs`, which must outlive this.
    ByteCascade(const CodePage& page, std::vector<BasicReplacementPair<char>> bytes,
                PreparedPairs& pairs)
        : page_(page), several_(bytes.size() > 1), bytes_(std::move(bytes)), pairs_(pairs) {}

    /// As BasicCascade does.
    bool Apply(View text, std::string& result) const;

private:
    const CodePage& page_;
    bool several_; // so that one can find what another has made
    BasicCascade<char> bytes_;
    PreparedPairs& pairs_;
};

/// Replaces in well-formed UTF-8, with the same result as in its characters.
class Utf8Cascade {
public:
    using View = std::string_view;

    explicit Utf8Cascade(std::vector<BasicReplacementPair<char>> pairs);

    /// As BasicCascade does.
    bool Apply(View text, std::string& result) const { return bytes_->Apply(text, result); }

    /// Characters that stand in no find text, so that no match reaches across one: what lies
    /// between them may be changed by itself (docs/CASCADE.md).
    const AsciiSet& Borders() const { return borders_; }

private:
    AsciiSet borders_;
    std::optional<BasicCascade<char>> bytes_;
};

/// Replaces in wide text (base/Utf8.h), with a pass for each pair: texts that hold half a character
/// or a stray byte are rare.
class WideCascade {
public:
    using View = std::u32string_view;

    explicit WideCascade(const std::vector<ReplacementPair>& pairs);

    /// As BasicCascade does.
    bool Apply(View text, std::u32string& result) const;

private:
    std::vector<BasicReplacementPair<char32_t>> pairs_;
};

/// Find and replace texts that belong together by their numbers, made ready for many files.
class PreparedPairs {
public:
    /// Find text i goes with replace text i.
    PreparedPairs(std::span<const std::u16string> find, std::span<const std::u16string> replace);
    PreparedPairs(const PreparedPairs&) = delete;
    PreparedPairs& operator=(const PreparedPairs&) = delete;
    ~PreparedPairs() = default;

    /// A sentence for each find text without a partner, which makes no pair.
    const std::vector<std::u16string>& Partnerless() const { return partnerless_; }

    /// Replaces characters.
    const BasicCascade<char16_t>& OfCharacters();

    /// Replaces bytes of the code page. Null when a text of a pair holds a character that the page
    /// lacks, or half of one: a pair may insert it and a later pair find it.
    const ByteCascade* OfBytes(const AnsiCodePage& ansi);

    /// Replaces in UTF-8. Null when a text of a pair holds half a character.
    const Utf8Cascade* OfUtf8();

    /// Replaces in wide text.
    const WideCascade& OfWideText();

    /// Replaces in contact cards.
    const vcard::Pairs& OfCards();

private:
    std::vector<ReplacementPair> pairs_;
    std::vector<std::u16string> partnerless_;
    std::optional<BasicCascade<char16_t>> ofCharacters_;
    std::optional<ByteCascade> ofBytes_;
    bool askedForBytes_ = false;
    std::uint64_t codePage_ = 0; // the choice of the page that the bytes are of
    std::optional<Utf8Cascade> ofUtf8_;
    bool askedForUtf8_ = false;
    std::optional<WideCascade> ofWideText_;
    std::optional<CardPairs> ofCards_;
};

} // namespace vexmarrow

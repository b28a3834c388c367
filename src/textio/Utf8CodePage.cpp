// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Utf8.h"
#include "textio/CodePage.h"

namespace vexmarrow {
namespace {

class Utf8CodePage final : public CodePage {
public:
    std::u16string_view Name() const override { return u"UTF-8"; }

    void Decode(std::string_view bytes, std::u16string& text) const override {
        DecodeUtf8(bytes, text);
    }

    void Encode(std::u16string_view text, std::string& bytes) const override {
        EncodeUtf8(text, bytes, kSubstitute);
    }

    std::string_view FromUtf8(std::string_view utf8, std::string& /*room*/) const override {
        return utf8;
    }

    bool HasStrayBytes() const override { return true; }

    int CodeOf(char16_t character) const override { return character; }

    std::optional<std::string> SearchableBytes(std::u16string_view text) const override {
        std::string bytes;
        EncodeUtf8(text, bytes, kSubstitute);
        // Adjacent stray bytes may look like a character once they are encoded.
        return IsUtf8(bytes) && TextFromUtf8(bytes) == text ? std::optional(std::move(bytes))
                                                            : std::nullopt;
    }

    bool IsExactInBytes(std::string_view bytes) const override { return IsUtf8(bytes); }
    TextStretch Measure(std::string_view bytes, std::size_t most, bool more) const override {
        return MeasureUtf8(bytes, most, more);
    }
};

} // namespace

std::unique_ptr<const CodePage> MakeUtf8CodePage() {
    return std::make_unique<Utf8CodePage>();
}

} // namespace vexmarrow

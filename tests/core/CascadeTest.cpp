// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "engine/Cascade.h"

#include "support/PlainCascade.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sys/mman.h>

namespace vexmarrow::test {
namespace {

/// Memory between two pages that nobody may touch.
class Enclosure {
public:
    Enclosure() {
        mprotect(memory_, kPage, PROT_NONE);
        mprotect(memory_ + kPage + kRoom, kPage, PROT_NONE);
    }
    Enclosure(const Enclosure&) = delete;
    Enclosure& operator=(const Enclosure&) = delete;
    ~Enclosure() { munmap(memory_, kRoom + 2 * kPage); }

    /// The text, at one end of the memory.
    template <typename Unit>
    std::basic_string_view<Unit> Hold(const std::basic_string<Unit>& text, bool first) {
        const std::size_t bytes = text.size() * sizeof(Unit);
        char* const place = memory_ + kPage + (first ? 0 : kRoom - bytes);
        std::copy_n(reinterpret_cast<const char*>(text.data()), bytes, place);
        return {reinterpret_cast<const Unit*>(place), text.size()};
    }

private:
    static constexpr std::size_t kPage = 4096, kRoom = 1 << 20;
    char* const memory_ = static_cast<char*>(mmap(
        nullptr, kRoom + 2 * kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
};

template <typename Unit>
struct CascadeTest : testing::Test {
    using String = std::basic_string<Unit>;
    using Pairs = std::vector<BasicReplacementPair<Unit>>;

    Enclosure enclosure;
    std::mt19937 random{2026};
    static String Units(std::string_view text) { return {text.begin(), text.end()}; }
    std::size_t Below(std::size_t limit) { return random() % limit; }

    /// Whether the cascade does to the text what the plain one does; it is applied twice.
    bool IsExact(const BasicCascade<Unit>& cascade, const Pairs& pairs, const String& text) {
        String plain = text, result;
        for (const auto& pair : pairs) {
            plain = PlainStep(plain, pair);
        }
        for (const bool first : {false, true}) {
            const auto held = enclosure.Hold(text, first);
            if (!cascade.Apply(held, result)) {
                result = held;
            }
            if (result != plain) {
                return false;
            }
        }
        return true;
    }

    /// Texts must not grow without bounds: pairs that make them too long are left out.
    static void Tame(Pairs& pairs, String text) {
        const std::size_t most = 2 * text.size() + 500;
        for (auto& pair : pairs) {
            String made = PlainStep(text, pair);
            made.size() > most ? pair.replace.clear() : text.swap(made);
        }
    }

    void Check(const Pairs& pairs, const std::vector<String>& texts) {
        const BasicCascade<Unit> cascade(pairs);
        for (const String& text : texts) {
            ASSERT_TRUE(IsExact(cascade, pairs, text)) << testing::PrintToString(text);
        }
    }

    String Word(const String& letters, std::size_t least, std::size_t most) {
        String word(least + Below(most - least + 1), Unit{});
        std::generate(word.begin(), word.end(), [&] { return letters[Below(letters.size())]; });
        return word;
    }

    /// Pairs of which each may contain parts of the others.
    Pairs Entangled(std::size_t count, const String& finds, const String& all, std::size_t least,
                    std::size_t most) {
        Pairs pairs(count);
        for (auto& [find, replace] : pairs) {
            find = Below(40) == 0 ? String() : Word(finds, least, most);
            const auto& other = pairs[Below(count)];
            const String& used = Below(2) == 0 ? other.find : other.replace;
            replace = Below(3) == 0   ? Word(all, 0, find.size())
                      : Below(2) == 0 ? used.substr(0, most)
                                      : Word(all, 0, 1) + used.substr(0, find.size());
            if (Below(4) == 0) {
                find = (find + used).substr(0, most);
            }
        }
        return pairs;
    }
};

using UnitTypes = testing::Types<char, char16_t>;
TYPED_TEST_SUITE(CascadeTest, UnitTypes);

TYPED_TEST(CascadeTest, RandomTextsAndPairs) {
    const std::basic_string<TypeParam> all{
        'a', 'e', 'b', ':', '\n', ' ', '\r', 'Q', '\0', 'x', TypeParam(0xE9), TypeParam(0xD861)};
    for (int round = 0; round < 20'000 && !this->HasFailure(); ++round) {
        auto letters = all;
        std::shuffle(letters.begin(), letters.end(), this->random);
        letters.resize(2 + this->Below(5));
        const auto finds = letters.substr(0, letters.size() - this->Below(2)); // else one cuts
        const std::size_t most[] = {3, 20, 60, 200};
        const std::size_t count = 1 + this->Below(most[this->Below(this->Below(4) + 1)]);
        const std::size_t least = 1 + this->Below(8);
        auto pairs = this->Entangled(count, finds, letters, least, least + this->Below(9 - least));
        const std::size_t length = 1 + this->Below(round % 8 == 0 ? 600 : 120);
        auto text = this->Word(letters, 0, length);
        if (this->Below(2) == 0) { // hits are sparse
            text = this->Word(all, length, length);
            for (std::size_t i = this->Below(4); i > 0; --i) {
                text.insert(this->Below(text.size() + 1), pairs[this->Below(count)].find);
            }
        }
        this->Tame(pairs, text);
        this->Check(pairs, {text, text.substr(text.size() / 2), {}, text + TypeParam('\n')});
    }
}

// Of long texts so much is seen that the cascade plans anew.
TYPED_TEST(CascadeTest, LongTextsInPieces) {
    const auto letters = this->Units("eeeeaaannnttiiorsldhucmfgpbwyvkxjqz    ::\r\n;EAST1290");
    const auto text = this->Word(letters, 65'736, 65'736);
    for (const std::size_t count : {2U, 100U, 1000U}) {
        typename TestFixture::Pairs pairs;
        while (pairs.size() < count) { // texts that occur, and texts that nearly do
            auto find = text.substr(this->Below(65'000), 5 + this->Below(20));
            if (this->Below(4) != 0) {
                find[this->Below(find.size())] = letters[this->Below(letters.size())];
            }
            if (find.find(TypeParam('\n')) == find.npos) { // else all the text were one line
                pairs.push_back({find, this->Word(letters, 0, 9)});
            }
        }
        std::vector<typename TestFixture::String> pieces;
        for (std::size_t i = 0; i < (count < 1000 ? 150 : 3); ++i) {
            pieces.push_back(text.substr(i % 3, 65'536 - 75 + i));
            if (i % 6 == 0) { // and longer ones
                const auto& found = pairs[i % count].find;
                pieces.back() += found + found + found + found + found + text.substr(0, 900);
            }
        }
        this->Check(pairs, pieces);
    }
}

TYPED_TEST(CascadeTest, WhatNearlyMatchesEverywhere) {
    using Text = typename TestFixture::String;
    const auto many = [this](const char* part, std::size_t times) {
        Text text;
        for (; times > 0; --times) {
            text += this->Units(part);
        }
        return text;
    };
    const Text z{'z'};
    for (const char* part : {"a", "ab", "aab"}) {
        const Text find = many(part, 300) + Text{'b'}, text = many(part, 30'000);
        typename CascadeTest<TypeParam>::Pairs pairs{{find, z}};
        this->Check(pairs, {text, text + find + text, find + find + many(part, 20), find});
        // Occurrences that overlap, after so much that nearly matches.
        const Text half = many(part, 150) + Text{'a'};
        this->Check({{half + half, z}}, {text + half + half + half + half + half + text});
        for (std::size_t i = 1; i < 40; ++i) { // finds that share all their grams
            pairs.push_back({many(part, 100 + i) + Text{'c'}, many(part, i)});
        }
        this->Check(pairs, {text, text + pairs.back().find + text});
    }
}

} // namespace
} // namespace vexmarrow::test

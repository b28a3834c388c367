// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// Measures the cascade and compares it with copying the same memory. The column ofMemcpy is its
// throughput as a share of that of memcpy in the same run.

#include "Cards.h"
#include "engine/Cascade.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <ctime>
#include <functional>

namespace vexmarrow::test {
namespace {

constexpr std::size_t kBytes = std::size_t{256} << 20;
constexpr std::size_t kPiece = 65'536; // units
constexpr unsigned kSeed = 2026;
double copied = 0; // bytes per second of memcpy

/// The processor time of this process, because other processes may use the machine, too.
double Seconds(std::clock_t since) {
    return static_cast<double>(std::clock() - since) / CLOCKS_PER_SEC;
}

const std::string& Book() {
    static const std::string text = Cards(kSeed).Text(kBytes);
    return text;
}

void Copy(benchmark::State& state) {
    std::string buffer(kPiece, '\0');
    const std::string& text = Book();
    double bytes = 0;
    const std::clock_t begun = std::clock();
    for (auto _ : state) {
        for (std::size_t at = 0; at < kBytes; at += kPiece) {
            std::memcpy(buffer.data(), text.data() + at, kPiece);
            benchmark::ClobberMemory();
        }
        bytes += static_cast<double>(kBytes);
    }
    copied = bytes / Seconds(begun);
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}

template <typename Unit>
struct Work {
    std::vector<BasicReplacementPair<Unit>> pairs;
    std::basic_string<Unit> text;
    std::size_t piece = kPiece;
};

template <typename Unit>
void Replace(benchmark::State& state, const std::function<Work<Unit>()>& make) {
    const Work<Unit> work = make();
    const BasicCascade<Unit> cascade(work.pairs);
    const std::basic_string_view<Unit> text = work.text;
    std::basic_string<Unit> result;
    double bytes = 0;
    std::size_t changed = 0;
    std::size_t pieces = 0;
    const std::clock_t begun = std::clock();
    for (auto _ : state) {
        for (std::size_t at = 0; at < text.size(); at += work.piece) {
            changed += cascade.Apply(text.substr(at, work.piece), result) ? 1 : 0;
            ++pieces;
            benchmark::DoNotOptimize(result.data());
        }
        bytes += static_cast<double>(text.size() * sizeof(Unit));
    }
    if (copied > 0) {
        state.counters["ofMemcpy"] = bytes / Seconds(begun) / copied;
    }
    state.counters["changed"] = static_cast<double>(changed) / static_cast<double>(pieces);
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}

/// Cards that have the same number of bytes for either unit. A single pair hits every other card.
template <typename Unit>
Work<Unit> InCards(std::size_t count, std::size_t piece) {
    Work<Unit> work{{}, As<Unit>(Book().substr(0, kBytes / sizeof(Unit))), piece};
    const Cards::Pairs one{{Cards::kOfHalf, "Quillhaven & Sons"}};
    work.pairs = count == 1 ? As<Unit>(one, 1) : As<Unit>(Cards(kSeed).Sets(), count);
    return work;
}

// Texts and pairs that no address book has, but that must not make the program slow.

std::string Repeated(const std::string& part, std::size_t size) {
    std::string text;
    while (text.size() < size) {
        text += part;
    }
    return text;
}

template <typename Unit>
std::function<Work<Unit>()> Worst(const std::string& name) {
    return [name]() -> Work<Unit> {
        constexpr std::size_t kSize = 1 << 20;
        std::string all; // every unit of a card, so that no unit is left at which to cut
        for (char unit = ' '; unit <= '~'; ++unit) {
            all += unit;
        }
        Cards cards(kSeed);
        Cards::Pairs pairs = cards.Sets();
        std::string text = cards.Text(kSize);
        std::size_t piece = kPiece;
        std::mt19937 random(kSeed);
        const auto syllable = [&](std::size_t length) {
            return text.substr(random() % (kSize - length), length);
        };
        if (name == "NearlyMatching") {
            pairs = {{Repeated("ab", 1000) + "b", "c"}};
            text = Repeated("ab", kSize);
        } else if (name == "HundredNearlyMatching") {
            pairs.clear();
            for (std::size_t i = 0; i < 100; ++i) {
                pairs.push_back({Repeated("ab", 500 + i) + "ba", "c"});
            }
            text = Repeated("ab", kSize);
        } else if (name == "NoCuts") {
            pairs.back().find = all + "\r\n";
        } else if (name == "NoCutsOneMegabyte") {
            pairs.back().find = all + "\r\n";
            piece = kSize;
        } else if (name == "LongLines") {
            std::replace(text.begin(), text.end(), '\n', ' ');
            std::replace(text.begin(), text.end(), '\r', ' ');
            piece = kSize;
        } else if (name == "OneToThreeUnits") {
            pairs.clear();
            for (std::size_t i = 0; i < 1500; ++i) {
                pairs.push_back({syllable(1 + i % 3), syllable(1 + i % 3)});
            }
        } else if (name == "RareOneToThreeUnits") {
            pairs.clear();
            for (std::size_t i = 0; i < 1500; ++i) {
                std::string find{static_cast<char>('!' + i % 90), '~',
                                 static_cast<char>('!' + i / 90)};
                pairs.push_back({find.substr(i % 3 % 2, 3 - i % 3), "x"});
            }
        } else if (name == "AllHitEverywhere") {
            pairs.clear();
            for (std::size_t i = 0; i < 1000; ++i) {
                pairs.push_back({i % 2 == 0 ? "er" : "re", i % 2 == 0 ? "re" : "er"});
            }
        } else if (name == "Transliteration") {
            pairs.clear();
            for (char letter = 'a'; letter <= 'z'; ++letter) {
                pairs.push_back({{letter}, {'-', static_cast<char>(letter - 'a' + 'A')}});
            }
        }
        return {As<Unit>(pairs, pairs.size()), As<Unit>(text), piece};
    };
}

} // namespace
} // namespace vexmarrow::test

int main(int argc, char** argv) {
    using namespace vexmarrow::test;
    benchmark::Initialize(&argc, argv);
    const auto add = [](const std::string& name, auto function) {
        benchmark::RegisterBenchmark(name.c_str(), function)->Unit(benchmark::kMillisecond);
    };
    add("memcpy", Copy);
    for (const std::size_t piece : {std::size_t{4096}, kPiece}) {
        for (const std::size_t count : {1, 10, 100, 1000}) {
            const std::string name = "/" + std::to_string(count) + "Pairs/" + std::to_string(piece);
            add("bytes" + name, [=](benchmark::State& state) {
                Replace<char>(state, [=] { return InCards<char>(count, piece); });
            });
            add("16-bit" + name, [=](benchmark::State& state) {
                Replace<char16_t>(state, [=] { return InCards<char16_t>(count, piece); });
            });
        }
    }
    for (const char* name :
         {"NearlyMatching", "HundredNearlyMatching", "NoCuts", "NoCutsOneMegabyte", "LongLines",
          "OneToThreeUnits", "RareOneToThreeUnits", "AllHitEverywhere", "Transliteration"}) {
        add(std::string("bytes/") + name,
            [=](benchmark::State& state) { Replace<char>(state, Worst<char>(name)); });
        add(std::string("16-bit/") + name,
            [=](benchmark::State& state) { Replace<char16_t>(state, Worst<char16_t>(name)); });
    }
    benchmark::RunSpecifiedBenchmarks();
}

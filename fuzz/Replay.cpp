// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "fuzz/Fuzz.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <vector>

// Runs a target without a fuzzer, on every file in the given folders and on variants of each, which
// are the same in every run. An input that ends the program is written to a file beside it.
//
//     replay_TARGET VARIANTS FOLDER...

namespace {

std::string current; // the input that is being tried
std::string caseName;

/// Memory may be corrupt by now, but there is nothing left to lose.
void KeepCase(int signal) {
    std::ofstream(caseName, std::ios::binary) << current;
    std::fprintf(stderr, "The input is in %s\n", caseName.c_str());
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void Try(const std::string& input) {
    current = input;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

/// Uses no distribution of the library: only the generator gives the same numbers everywhere.
std::string VariantOf(std::string input, std::mt19937& random) {
    constexpr std::string_view kSpecialBytes("\r\n:\0\xFF\xFE\xEF\xBB\xBF\xC3\xA9\xED\xA0% /", 16);
    for (auto changes = 1 + random() % 4; changes > 0; --changes) {
        const std::string parts[] = {std::string(1, static_cast<char>(random())),
                                     std::string(1, kSpecialBytes[random() % kSpecialBytes.size()]),
                                     input.substr(random() % (input.size() + 1), random() % 4)};
        const std::size_t at = random() % (input.size() + 1);
        input.replace(at, random() % 3, parts[random() % 3]);
    }
    return input;
}

} // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> words(arguments, arguments + count);
    caseName = words.at(0) + ".case";
    std::signal(SIGABRT, KeepCase);
    std::signal(SIGSEGV, KeepCase);
    std::mt19937 random(20260101);
    for (std::size_t i = 2; i < words.size(); ++i) {
        std::set<std::filesystem::path> files; // sorted, unlike the entries of a directory
        for (const auto& entry : std::filesystem::directory_iterator(words[i])) {
            files.insert(entry.path());
        }
        if (files.empty()) {
            std::fprintf(stderr, "There is nothing to replay in %s\n", words[i].c_str());
            return 1;
        }
        for (const std::filesystem::path& path : files) {
            std::ifstream file(path, std::ios::binary);
            const std::string content(std::istreambuf_iterator<char>(file), {});
            Try(content);
            for (int left = std::stoi(words[1]); left > 0; --left) {
                Try(VariantOf(content, random));
            }
        }
    }
    return words.size() > 2 ? 0 : 2;
}

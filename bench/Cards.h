// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/Cascade.h"

#include <random>
#include <string>
#include <vector>

namespace vexmarrow::test {

/// Makes up cards of about 4 KB each and sets that fit them: of the finds of 1,000 sets about five
/// stand in each card, and kOfHalf stands once in every other card. The same seed makes the same.
class Cards {
public:
    using Pairs = std::vector<BasicReplacementPair<char>>;
    static constexpr const char* kOfHalf = "Quillhaven GmbH";

    explicit Cards(unsigned seed) : random_(seed) {
        for (int i = 0; i < 3000; ++i) {
            words_.push_back(Syllables(1 + random_() % 3));
        }
        for (int i = 0; i < 1000; ++i) {
            const std::string number = std::to_string(1000 + random_() % 9000);
            const std::string find[] = {Name() + " " + Name(),
                                        "+49 " + number.substr(1) + " " + number,
                                        Word() + "@" + Word() + ".example",
                                        Name() + "weg " + number,
                                        "ORG:" + Name() + ";" + Name(),
                                        Syllables(3) + "mann"};
            sets_.push_back({find[random_() % 6], random_() % 5 == 0 ? "" : Name() + number});
        }
    }

    const Pairs& Sets() const { return sets_; }

    /// Cards, one after the other, as many as fit.
    std::string Text(std::size_t size) {
        std::string text;
        for (bool half = false; text.size() < size; half = !half) {
            const std::size_t end = text.size() + 4096;
            text += "BEGIN:VCARD\r\nVERSION:3.0\r\nN:" + Name() + ";" + Name() +
                    ";;;\r\nFN:" + Name() + "\r\n" +
                    (half ? std::string("ORG:") + kOfHalf + "\r\n" : "");
            for (int found = 0; text.size() < end; ++found) {
                const std::string number = std::to_string(random_() % 100000000);
                text += "TEL;TYPE=WORK,VOICE:+49 " + number + "\r\nEMAIL;TYPE=INTERNET:" + Word() +
                        "." + Word() + "@" + Word() + ".com\r\nADR;TYPE=HOME:;;" + Name() +
                        "str. " + number.substr(0, 2) + ";" + Name() + ";;" + number +
                        ";Germany\r\nNOTE:";
                for (std::size_t line = text.size(); text.size() < line + 600;) {
                    text += Word() + (random_() % 12 == 0 ? "\r\n " : " ");
                }
                text += (found < 5 ? sets_[random_() % sets_.size()].find : "") + "\r\n";
            }
            text += "END:VCARD\r\n";
        }
        text.resize(size);
        return text;
    }

private:
    /// Common sounds more often than rare ones.
    template <std::size_t Count>
    const char* Sound(const char* const (&sounds)[Count]) {
        return sounds[std::min(random_() % Count, random_() % Count)];
    }
    std::string Syllables(std::size_t count) {
        std::string word;
        for (; count > 0; --count) {
            word +=
                Sound({"s",  "m", "b", "t",   "k",  "r", "l",  "n",  "d", "h",  "w",  "f", "g",
                       "st", "v", "p", "sch", "br", "j", "kr", "tr", "z", "fr", "gl", "c", "qu"});
            word += Sound({"e", "a", "i", "o", "u", "ei", "au", "ie", "ee", "y"});
            word += Sound({"", "n", "r", "l", "s", "t", "m", "ck", "ng", "rt", "nd", "ll", "x"});
        }
        return word;
    }
    std::string Word() { return words_[std::min(random_(), random_()) % words_.size()]; }
    std::string Name() {
        std::string name = Word() + Syllables(1);
        name[0] = static_cast<char>(name[0] - 'a' + 'A');
        return name;
    }

    std::mt19937 random_;
    std::vector<std::string> words_;
    Pairs sets_;
};

/// The same bytes, or as many characters.
template <typename Unit>
std::basic_string<Unit> As(const std::string& text) {
    return {text.begin(), text.end()};
}
template <typename Unit>
std::vector<BasicReplacementPair<Unit>> As(const Cards::Pairs& pairs, std::size_t count) {
    std::vector<BasicReplacementPair<Unit>> result;
    for (std::size_t i = 0; i < count; ++i) {
        result.push_back({As<Unit>(pairs[i].find), As<Unit>(pairs[i].replace)});
    }
    return result;
}

} // namespace vexmarrow::test

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "base/Text.h"
#include "fuzz/MemoryFile.h"
#include "sets/SetList.h"
#include "sets/SetOperations.h"
#include "sets/SetsLoading.h"
#include "support/Doubles.h"
#include "textio/FileWriter.h"

// Loading sets from a file with any content, saving them, and loading the saved file.

namespace vexmarrow::fuzz {
namespace {

/// Writes into a string directly, since nothing can fail.
class MemoryWriter final : public FileWriter {
public:
    explicit MemoryWriter(std::string& file) : file_(file) {}

    std::unique_ptr<PendingFile> Begin(std::u16string_view, InputFile*) override {
        struct Pending final : PendingFile {
            explicit Pending(std::string& target) : file(target) { file.clear(); }
            void Append(std::string_view bytes) override { file += bytes; }
            void Seal() override {}
            void Commit() override {}
            std::string& file;
        };
        return std::make_unique<Pending>(file_);
    }
    void Settle() noexcept override {}

private:
    std::string& file_;
};

/// The sets that these lines hold.
std::vector<test::TextPair> SetsIn(const Texts& lines, std::u16string_view separator) {
    std::vector<test::TextPair> sets;
    for (const std::u16string& line : lines) {
        if (const std::size_t at = line.find(separator); at != std::u16string::npos) {
            const std::u16string rest = line.substr(at + separator.size());
            sets.emplace_back(line.substr(0, at), rest.substr(0, rest.find(separator)));
        }
    }
    return sets;
}

std::vector<test::TextPair> SetsOf(const SetList& list) {
    std::vector<test::TextPair> sets;
    Require(list.FindTexts().size() == list.ReplaceTexts().size(), "the lists are equally long");
    for (std::size_t i = 0; i < list.FindTexts().size(); ++i) {
        sets.emplace_back(list.FindTexts()[i], list.ReplaceTexts()[i]);
    }
    return sets;
}

} // namespace

void TryInput(Input input) {
    constexpr std::u16string_view kSeparators[] = {u"::", u",", u"=>",    u" ",
                                                   u"aa", u":", u"\u00E9"};
    const std::u16string_view separator = kSeparators[input.Byte() % std::size(kSeparators)];
    Reader reader(input);
    SetList list;
    test::ScriptedDesktop desktop;
    MemoryWriter writer(reader.file.bytes);
    SetsLoading loading(list, desktop.desktop, reader.textio);
    SetOperations operations(list, desktop.desktop, writer, reader.textio);

    reader.file.bytes = input.Rest();
    const auto lines = reader.TryLines();
    Require(loading.Load(kPath, separator), "the dialog closes");
    Require(desktop.prompts.boxes.empty() == lines.has_value(),
            "a failed read is reported, nothing else");
    const std::vector<test::TextPair> sets = SetsOf(list);
    Require(sets == SetsIn(lines.value_or(Texts()), separator), "each line may be one set");

    desktop.pickers.saves = {kPath};
    desktop.prompts.answers = {Answer::Yes};
    operations.SaveSets();
    std::string expected;
    for (const auto& [find, replace] : sets) {
        reader.ansi.Page().Encode(Concat(find, u"::", replace, u"\r\n"), expected);
    }
    Require(reader.file.bytes == expected, "a set is saved as a line, in the code page");

    loading.Load(kPath, u"::"); // adds to the list
    std::vector<test::TextPair> all = sets;
    for (test::TextPair& set : SetsIn(reader.TryLines().value_or(Texts()), u"::")) {
        all.push_back(std::move(set));
    }
    Require(SetsOf(list) == all, "what was saved is loaded, and follows what the list held");
}

} // namespace vexmarrow::fuzz

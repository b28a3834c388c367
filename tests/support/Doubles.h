// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Utf8.h"
#include "shell/Desktop.h"
#include "shell/EventLoop.h"
#include "shell/FileManager.h"
#include "shell/MousePointer.h"
#include "shell/Pickers.h"
#include "shell/Prompts.h"
#include "shell/SettingsStore.h"
#include "textio/FileWriter.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Stand-ins for the desktop services. Each records its calls and gives prepared answers.

namespace vexmarrow::test {

using TextPair = std::pair<std::u16string, std::u16string>;

/// The next prepared answer; `afterwards` once all are used up.
template <typename Value>
Value NextOf(std::deque<Value>& answers, Value afterwards = {}) {
    if (!answers.empty()) {
        afterwards = std::move(answers.front());
        answers.pop_front();
    }
    return afterwards;
}

struct Box {
    std::u16string text;
    BoxStyle style;
    std::u16string title;
};

class ScriptedPrompts final : public Prompts {
public:
    std::vector<Box> boxes;                    ///< all boxes that were shown
    std::deque<Answer> answers;                ///< to questions; No once they are used up
    std::vector<TextPair> asked;               ///< prompts and suggestions
    std::deque<std::u16string> texts;          ///< typed texts; cancelled once they are used up
    std::function<void(const Box&)> whenShown; ///< called while a box is open

    /// The texts of the boxes since the last call, in UTF-8. An error report is given by its second
    /// line, which says where the failure happened.
    std::vector<std::string> TakeSummaries() {
        std::vector<std::string> summaries;
        for (; taken_ < boxes.size(); ++taken_) {
            std::u16string_view text = boxes[taken_].text;
            if (boxes[taken_].title == u"Application Error") {
                text = text.substr(text.find(u"\r\n") + 2);
                text = text.substr(0, text.find(u"\r\r"));
            }
            summaries.push_back(NativeName(text));
        }
        return summaries;
    }

    Answer ShowMessage(std::u16string_view text, BoxStyle style,
                       std::u16string_view title) override {
        const Box box{std::u16string(text), style, std::u16string(title)};
        boxes.push_back(box);
        if (whenShown) {
            whenShown(box);
        }
        const bool question =
            style == BoxStyle::YesNo || style == BoxStyle::Question || style == BoxStyle::OrLater;
        return question ? NextOf(answers, Answer::No) : Answer::Ok;
    }
    std::u16string AskForText(std::u16string_view prompt, std::u16string_view suggestion) override {
        asked.emplace_back(prompt, suggestion);
        return NextOf(texts);
    }

private:
    std::size_t taken_ = 0;
};

/// Keeps the bytes of the last written file, whatever its path.
class KeepingWriter final : public FileWriter {
public:
    std::optional<std::string> result; ///< set when the file is complete

    std::unique_ptr<PendingFile> Begin(std::u16string_view, InputFile*) override {
        struct Pending final : PendingFile {
            explicit Pending(std::optional<std::string>& kept) : result(kept) { result.reset(); }
            void Append(std::string_view more) override { bytes += more; }
            void Seal() override {}
            void Commit() override { result = std::move(bytes); }
            std::optional<std::string>& result;
            std::string bytes;
        };
        return std::make_unique<Pending>(result);
    }
    void Settle() noexcept override {}
};

class ScriptedPickers final : public Pickers {
public:
    std::vector<TextPair> asked;                   ///< titles, with filters or start folders
    std::deque<std::vector<std::u16string>> files; ///< all answers: cancelled once they are used up
    std::deque<std::u16string> saves;
    std::deque<std::u16string> folders;

    std::vector<std::u16string> OpenFiles(const FileDialogRequest& request) override {
        asked.emplace_back(request.title, request.filter);
        return NextOf(files);
    }
    std::u16string SaveFile(const FileDialogRequest& request) override {
        asked.emplace_back(request.title, request.filter);
        return NextOf(saves);
    }
    std::u16string BrowseForFolder(std::u16string_view title, std::u16string_view start) override {
        asked.emplace_back(title, start);
        return NextOf(folders);
    }
};

class MemorySettings final : public SettingsStore {
public:
    std::map<std::u16string, std::u16string, std::less<>> values;
    std::vector<TextPair> writes; ///< in order

    std::u16string GetSetting(std::u16string_view key,
                              std::u16string_view fallback) const override {
        const auto found = values.find(key);
        return found == values.end() ? std::u16string(fallback) : found->second;
    }
    void SaveSetting(std::u16string_view key, std::u16string_view value) override {
        writes.emplace_back(key, value);
        values.insert_or_assign(std::u16string(key), std::u16string(value));
    }
};

class RecordingFileManager final : public FileManager {
public:
    std::vector<std::u16string> opened;

    void OpenFolder(std::u16string_view folder) override { opened.emplace_back(folder); }
};

class ScriptedEventLoop final : public EventLoop {
public:
    std::vector<std::string> told; ///< at each yield: item, done, "/", total
    std::map<std::size_t, std::function<void()>> whenTold; ///< by the number of the yield, from 1

    void Yield(const Progress& progress) override {
        told.push_back(NativeName(progress.item) + " " + std::to_string(progress.done) + "/" +
                       std::to_string(progress.total));
        if (const auto due = whenTold.find(told.size()); due != whenTold.end()) {
            due->second();
        }
    }
};

class RecordingPointer final : public MousePointer {
public:
    std::vector<Shape> shapes; ///< that were set, in order

    Shape Pointer() const override { return shapes.empty() ? Default : shapes.back(); }
    void SetPointer(Shape shape) override { shapes.push_back(shape); }
};

/// All of these stand-ins, and the Desktop that consists of them.
struct ScriptedDesktop {
    ScriptedPrompts prompts;
    ScriptedPickers pickers;
    MemorySettings settings;
    RecordingFileManager fileManager;
    ScriptedEventLoop loop;
    RecordingPointer pointer;
    Desktop desktop{prompts, pickers, settings, fileManager, loop, pointer};
};

} // namespace vexmarrow::test

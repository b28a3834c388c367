// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/CardReplacer.h"

#include "base/Utf8.h"
#include "textio/CodePage.h"
#include "textio/InputFile.h"
#include "vcard/Ascii.h"
#include "vcard/FileSurvey.h"
#include "vcard/LineChange.h"
#include "vcard/LineDecoder.h"
#include "vcard/LineReader.h"
#include "vcard/LineSkimmer.h"
#include "vcard/LineWriter.h"
#include "vcard/TextSource.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace vexmarrow::vcard {
namespace {

/// Smaller files are held in memory as a whole, and are surveyed only when that is needed.
constexpr std::size_t kSmall = std::size_t{8} * 1024 * 1024;

constexpr std::size_t kBlock = std::size_t{64} * 1024; // bytes that are written at once

/// Whether all text that is left is UTF-8. Says no, too, if a long part has no ASCII at all.
bool IsUtf8ToEnd(TextSource& text) {
    constexpr std::size_t kPart = std::size_t{256} * 1024;
    for (;;) {
        const std::string_view part = text.Peek(kPart);
        if (part.size() < kPart) {
            return IsUtf8(part);
        }
        std::size_t size = part.size(); // ends after ASCII, so that no character is cut
        while (size > 0 && static_cast<unsigned char>(part[size - 1]) >= 0x80) {
            --size;
        }
        if (size == 0 || !IsUtf8(part.substr(0, size))) {
            return false;
        }
        text.Skip(size);
    }
}

/// The line end within a fold.
std::string_view LineEndIn(std::string_view fold) {
    fold.remove_prefix(fold.find_first_of("\r\n"));
    return fold.substr(0, LengthOfLineEnd(fold));
}

/// The line end at the end of some lines.
std::string_view LastLineEnd(std::string_view lines) {
    std::size_t begin = lines.size() - 1;
    while (begin > 0 && lines.back() == '\n' && lines[begin - 1] == '\r' &&
           lines.size() - begin < kLongestLineEnd) {
        --begin;
    }
    return lines.substr(begin);
}

/// Replaces in one file.
class FileReplacement {
public:
    FileReplacement(TextSource& text, bool isSmall, std::optional<FileSurvey> survey,
                    Charsets& charsets, const FileCharsets& ofFile, const Pairs& pairs,
                    LinePart part, const std::function<void(std::string_view)>& write)
        : text_(text),
          whole_(text.Peek(0)),
          survey_(std::move(survey)),
          charsets_(charsets),
          hasMark_(ofFile.hasMark),
          pairs_(pairs),
          part_(part),
          write_(write),
          isSmall_(isSmall),
          reader_(text, charsets, ofFile.hasMark),
          skimmer_(reader_.Cards(), pairs.finder, ofFile.file->IsUtf8() || pairs.areFindsAscii,
                   ofFile.hasMark),
          decoder_(ofFile),
          writer_(ofFile, text) {}

    void Run() {
        write_(text_.MarkBytes());
        for (PutSkimmedLines(); reader_.Next(line_); PutSkimmedLines()) {
            if (!IsSearched() || !Change()) {
                Put(line_.raw);
            }
            if (line_.endSize > 0) {
                lastEnd_ = line_.LineEnd();
            }
        }
        PutKept();
        Flush();
        write_(text_.TornUnit());
    }

private:
    void PutSkimmedLines() {
        const std::string_view lines = reader_.Skim(skimmer_);
        Put(lines);
        if (!lines.empty()) {
            lastEnd_ = LastLineEnd(lines);
        }
    }

    /// A line whose value is not searched has its field searched only if that is one piece.
    bool IsSearched() const {
        const bool isPiece =
            line_.context.unsearched == Unsearched::No || line_.joined.size() <= kMostUnits;
        return !line_.isUnsearched && !line_.context.isFrame && isPiece;
    }

    /// Puts the changed line. If the line has to stay, puts nothing and returns false.
    bool Change() {
        LineDecoder::Shorten(line_);
        decoder_.Decode(line_, lineText_, kMostUnits + 1);
        decoder_.Cut(line_, lineText_);
        if (!line_.ends && line_.context.unsearched == Unsearched::No) {
            line_.context.charset = lineText_.ValueCharset(); // for all parts of the line
            reader_.ContinueAfter(line_);
        }
        const std::size_t first = pairs_.finder->FirstFound(lineText_.Text(), 0);
        if (first == PairFinder::kNone) {
            return false;
        }
        decoder_.Locate(line_, lineText_);
        if (!change_.Apply(pairs_, first, part_, line_, lineText_)) {
            return false;
        }
        writer_.Write(line_, lineText_, change_, {LineEnd(), [this] { return IsCardFolded(); }});
        if (BeginsNewlyWithBlank() || JoinsLineEnds() || !IsReadAsMeant()) {
            return false;
        }
        PutNew(writer_.Raw());
        Put(line_.LineEnd());
        return true;
    }

    /// Whether the changed line would continue the line before it.
    bool BeginsNewlyWithBlank() const {
        return line_.begins && BeginsWithBlank(writer_.Raw()) && !BeginsWithBlank(line_.raw);
    }

    /// Whether the change removes all that is between a CR and the line's LF or CR LF, which would
    /// then be a single line end.
    bool JoinsLineEnds() const {
        const std::string_view raw = writer_.Raw();
        const bool isBehindReturn =
            raw.empty() ? line_.begins && lastEnd_ == "\r" : raw.back() == '\r';
        return isBehindReturn && line_.endSize > 0 && (LineEnd() == "\n" || LineEnd() == "\r\n");
    }

    bool IsReadAsMeant() {
        if (!reader_.ReadAgain(writer_.Raw(), line_, lineAgain_)) {
            return false;
        }
        decoder_.Decode(lineAgain_, textAgain_, std::string_view::npos);
        return textAgain_.Text() == writer_.Text();
    }

    std::string_view LineEnd() const {
        if (line_.endSize > 0) {
            return line_.LineEnd();
        }
        if (!line_.folds.empty()) {
            return LineEndIn(line_.folds.front().bytes);
        }
        return lastEnd_.empty() ? "\r\n" : std::string_view(lastEnd_);
    }

    bool IsCardFolded() {
        if (line_.isFolded) {
            return true;
        }
        if (!survey_) { // a small file, which is still in memory
            TextSource whole(whole_);
            survey_ = SurveyFile(whole, charsets_, hasMark_);
        }
        return line_.context.card < survey_->isFolded.size() &&
               survey_->isFolded[line_.context.card];
    }

    /// Puts bytes of the text. In a small file these are not copied while more of the text follows,
    /// so that all bytes between two changed lines are written at once.
    void Put(std::string_view bytes) {
        if (!isSmall_) {
            PutNew(bytes);
        } else if (!kept_.empty() && bytes.data() == kept_.data() + kept_.size()) {
            kept_ = {kept_.data(), kept_.size() + bytes.size()};
        } else {
            PutKept();
            kept_ = bytes;
        }
    }

    void PutNew(std::string_view bytes) {
        PutKept();
        Append(bytes, kBlock);
    }

    void PutKept() {
        constexpr std::size_t kMany = 2048; // too many to copy
        Append(std::exchange(kept_, {}), kMany);
    }

    /// Appends bytes to those that are written next. Many bytes are written at once.
    void Append(std::string_view bytes, std::size_t many) {
        if (bytes.size() < many) {
            out_.append(bytes);
        }
        if (bytes.size() >= many || out_.size() >= kBlock) {
            Flush();
        }
        if (bytes.size() >= many) {
            write_(text_.ToFileBytes(bytes, room_));
        }
    }

    void Flush() {
        write_(text_.ToFileBytes(out_, room_));
        out_.clear();
    }

    TextSource& text_;
    std::string_view whole_; // the text of a small file
    std::optional<FileSurvey> survey_;
    Charsets& charsets_;
    bool hasMark_;
    const Pairs& pairs_;
    LinePart part_;
    const std::function<void(std::string_view)>& write_;
    bool isSmall_; // the whole text is in memory
    LineReader reader_;
    LineSkimmer skimmer_;
    LineDecoder decoder_;
    LineWriter writer_;
    LineChange change_;
    RawLine line_;
    LineText lineText_;
    RawLine lineAgain_;
    LineText textAgain_;
    std::string lastEnd_;
    std::string out_;       // bytes to write next
    std::string_view kept_; // bytes of the text to write after out_
    std::string room_;
};

} // namespace

void CardReplacer::Replace(InputFile& file, const Pairs& pairs, LinePart part, const CodePage& page,
                           const std::function<void(std::string_view)>& write) {
    TextSource text(file);
    FileCharsets charsets = charsets_.OfFile(text.Mark(), page);
    const std::string_view whole = text.Peek(kSmall);
    const bool isSmall = whole.size() < kSmall;
    std::optional<FileSurvey> survey;
    bool needsSurvey = !isSmall && pairs.mayGrowLines; // to learn how cards are folded
    if (!needsSurvey && !charsets.hasMark) {
        needsSurvey = !(isSmall ? IsUtf8(whole) : IsUtf8ToEnd(text));
    }
    if (!isSmall) {
        text.Rewind();
    }
    if (needsSurvey) {
        survey = SurveyFile(text, charsets_, charsets.hasMark);
        text.Rewind();
    }
    if (survey && !charsets.hasMark && !survey->IsUtf8()) {
        charsets.file = charsets.page;
    }
    text.Peek(isSmall ? kSmall : 0);
    FileReplacement(text, isSmall, std::move(survey), charsets_, charsets, pairs, part, write)
        .Run();
}

} // namespace vexmarrow::vcard

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "vcard/CardText.h"

#include "base/Utf8.h"
#include "textio/CodePage.h"
#include "textio/InputFile.h"
#include "vcard/Charset.h"
#include "vcard/FileText.h"
#include "vcard/FirstLook.h"
#include "vcard/LineChange.h"
#include "vcard/LineReader.h"
#include "vcard/LineText.h"
#include "vcard/LineWriter.h"
#include "vcard/PlainLines.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace vexmarrow::vcard {
namespace {

/// Files up to this size are in memory as a whole, and are looked at a second time only where that
/// is needed.
constexpr std::size_t kSmall = std::size_t{8} * 1024 * 1024;

constexpr std::size_t kBlock = std::size_t{64} * 1024; // bytes that are written at once

/// Whether all text from here on is UTF-8. Where there is nothing else for very long, it says no.
bool IsUtf8(FileText& text) {
    constexpr std::size_t kPart = std::size_t{256} * 1024;
    for (;;) {
        const std::string_view part = text.Peek(kPart);
        if (part.size() < kPart) {
            return vexmarrow::IsUtf8(part);
        }
        std::size_t size = part.size(); // up to where no character can be cut
        while (size > 0 && static_cast<unsigned char>(part[size - 1]) >= 0x80) {
            --size;
        }
        if (size == 0 || !vexmarrow::IsUtf8(part.substr(0, size))) {
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

/// The line end that lines end with.
std::string_view LastLineEnd(std::string_view lines) {
    std::size_t begin = lines.size() - 1;
    while (begin > 0 && lines.back() == '\n' && lines[begin - 1] == '\r' &&
           lines.size() - begin < kLongestLineEnd) {
        --begin;
    }
    return lines.substr(begin);
}

} // namespace

/// All charsets that were needed so far.
class CardText::CharsetsOfFiles final : public LineReader::CharsetsByName {
public:
    const Charset* Named(std::string_view name) override { return named_.Named(name); }

    /// Those of a file. `page` must stay in memory as long as this.
    FileCharsets Of(FileForm form, const CodePage& page) {
        if (page_ != &page) {
            ofPage_ = page.HasStrayBytes() ? MakeUtf8Charset() : MakePageCharset(page);
            page_ = &page;
        }
        const Charset* const file = !IsWide(form) ? utf8_.get()
                                    : form == FileForm::Utf16 || form == FileForm::Utf16Swapped
                                        ? ofUtf16_.get()
                                        : ofUtf32_.get();
        return {file, ofPage_.get(), utf8_.get(), form != FileForm::Unmarked};
    }

private:
    Charsets named_;
    std::unique_ptr<const Charset> utf8_ = MakeUtf8Charset();
    std::unique_ptr<const Charset> ofUtf16_ = MakeUnitsCharset(true);
    std::unique_ptr<const Charset> ofUtf32_ = MakeUnitsCharset(false);
    std::unique_ptr<const Charset> ofPage_;
    const CodePage* page_ = nullptr;
};

namespace {

/// The work on one file.
class Work {
public:
    Work(FileText& text, bool isSmall, std::optional<FirstLook> look,
         LineReader::CharsetsByName& charsets, const FileCharsets& ofFile, const Pairs& pairs,
         Part part, const std::function<void(std::string_view)>& write)
        : text_(text),
          whole_(text.Peek(0)),
          look_(std::move(look)),
          charsets_(charsets),
          hasMark_(ofFile.hasMark),
          pairs_(pairs),
          part_(part),
          write_(write),
          isSmall_(isSmall),
          reader_(text, charsets, ofFile.hasMark),
          plain_(reader_.Cards(), *pairs.finder, ofFile.file->IsUtf8() || pairs.findAscii,
                 ofFile.hasMark),
          decoder_(ofFile),
          writer_(ofFile, text) {}

    void Run() {
        write_(text_.Mark());
        for (PutPlainLines(); reader_.Next(line_); PutPlainLines()) {
            if (!IsSearched() || !Change()) {
                Put(line_.raw);
            }
            if (line_.endSize > 0) {
                lastEnd_ = line_.raw.substr(line_.raw.size() - line_.endSize);
            }
        }
        PutKept();
        Flush();
        write_(text_.Rest());
    }

private:
    void PutPlainLines() {
        const std::string_view lines = reader_.NextPlain(plain_);
        Put(lines);
        if (!lines.empty()) {
            lastEnd_ = LastLineEnd(lines);
        }
    }

    /// A field is not worked on in pieces where its value follows by itself.
    bool IsSearched() const {
        const bool isPiece =
            line_.context.passed == Passed::No || line_.joined.size() <= kMostUnits;
        return !line_.isPassedValue && !line_.context.isFrame && isPiece;
    }

    /// Puts the line as the pairs have changed it; false, and nothing put, if it stays.
    bool Change() {
        LineDecoder::Shorten(line_);
        decoder_.Decode(line_, lineText_);
        decoder_.Cut(line_, lineText_);
        if (!line_.ends && line_.context.passed == Passed::No) {
            line_.context.charset = lineText_.ValueCharset(); // the same for all its parts
            reader_.Take(line_, line_.raw.size());
        }
        if (pairs_.finder->FirstFound(lineText_.Text(), 0) == PairFinder::kNone) {
            return false;
        }
        decoder_.Locate(line_, lineText_);
        if (!change_.Apply(pairs_, part_, line_, lineText_)) {
            return false;
        }
        writer_.Write(line_, lineText_, change_, {LineEnd(), [this] { return IsCardFolded(); }});
        if (BeginsNewlyWithBlank() || JoinsLineEnds() || !IsReadAsMeant()) {
            return false;
        }
        PutNew(writer_.Raw());
        Put(line_.raw.substr(line_.raw.size() - line_.endSize));
        return true;
    }

    /// Whether the line would go on with the one before it.
    bool BeginsNewlyWithBlank() const {
        const auto beginsWithBlank = [](std::string_view raw) {
            return !raw.empty() && IsBlank(raw.front());
        };
        return line_.begins && beginsWithBlank(writer_.Raw()) && !beginsWithBlank(line_.raw);
    }

    /// Whether nothing is left between two line ends that are one then: CR, and LF or CR LF.
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
        decoder_.DecodeAgain(lineAgain_, textAgain_);
        return textAgain_.Text() == writer_.Text();
    }

    std::string_view LineEnd() const {
        if (line_.endSize > 0) {
            return line_.raw.substr(line_.raw.size() - line_.endSize);
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
        if (!look_) { // so that the file is small
            FileText whole(whole_, text_.Form());
            look_ = LookAt(whole, charsets_, hasMark_);
        }
        return line_.context.card < look_->isFolded.size() && look_->isFolded[line_.context.card];
    }

    /// Puts bytes of the text. In a small file they stay where they are until others follow, so
    /// that whatever lies between changed lines is put at once.
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
        if (bytes.size() >= kBlock) {
            Flush();
            write_(text_.InFile(bytes, room_));
            return;
        }
        out_.append(bytes);
        if (out_.size() >= kBlock) {
            Flush();
        }
    }

    void PutKept() {
        constexpr std::size_t kMany = 2048; // too many to be copied once more
        const std::string_view kept = std::exchange(kept_, {});
        if (kept.size() < kMany) {
            out_.append(kept);
            return;
        }
        Flush();
        write_(text_.InFile(kept, room_));
    }

    void Flush() {
        write_(text_.InFile(out_, room_));
        out_.clear();
    }

    FileText& text_;
    std::string_view whole_; // of a small file, without its mark
    std::optional<FirstLook> look_;
    LineReader::CharsetsByName& charsets_;
    bool hasMark_;
    const Pairs& pairs_;
    Part part_;
    const std::function<void(std::string_view)>& write_;
    bool isSmall_; // so that all of the text is in memory
    LineReader reader_;
    PlainLines plain_;
    LineDecoder decoder_;
    LineWriter writer_;
    LineChange change_;
    RawLine line_;
    LineText lineText_;
    RawLine lineAgain_;
    LineText textAgain_;
    std::string lastEnd_;
    std::string out_;       // what is to be written next
    std::string_view kept_; // and after it
    std::string room_;
};

} // namespace

CardText::CardText() : charsets_(std::make_unique<CharsetsOfFiles>()) {}
CardText::~CardText() = default;

void CardText::Replace(InputFile& file, const Pairs& pairs, Part part, const CodePage& page,
                       const std::function<void(std::string_view)>& write) {
    FileText text(file);
    FileCharsets charsets = charsets_->Of(text.Form(), page);
    const std::string_view whole = text.Peek(kSmall);
    const bool isSmall = whole.size() < kSmall;
    std::optional<FirstLook> look;
    bool needsLook = !isSmall && pairs.mayGrow; // at the folds of the cards
    if (!needsLook && !charsets.hasMark) {
        needsLook = !(isSmall ? vexmarrow::IsUtf8(whole) : IsUtf8(text));
    }
    if (!isSmall) {
        text.Rewind();
    }
    if (needsLook) {
        look = LookAt(text, *charsets_, charsets.hasMark);
        text.Rewind();
    }
    if (look && !charsets.hasMark && !look->IsUtf8()) {
        charsets.file = charsets.page;
    }
    text.Peek(isSmall ? kSmall : 0);
    Work(text, isSmall, std::move(look), *charsets_, charsets, pairs, part, write).Run();
}

} // namespace vexmarrow::vcard

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#pragma once

#include "vcard/Header.h"
#include "vcard/OpenCards.h"
#include "vcard/PhysicalLine.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexmarrow::vcard {

class Charset;
class FileText;
class PlainLines;

/// What joins two physical lines of a logical one.
struct Fold {
    std::uint32_t at = 0;   ///< where in the joined line it was taken out
    std::string_view bytes; ///< a line end and perhaps a blank; or `=`, blanks and a line end
    bool isSoftBreak = false;
    bool leavesBlank = false; ///< the blank after the line end is text, as in 2.1
};

/// Why a value is not searched.
enum class Passed {
    No,
    Base64,        ///< its line says that it is base64
    Base64Address, ///< it is a `data:` address
    Base64Letters, ///< it is a picture, sound or key, and begins with many letters of base64
    UnknownCharset,
};

/// How a logical line is read. It is the same for all parts of a line that comes in parts.
struct LineContext {
    bool inCard = false;
    bool isFrame = false; ///< BEGIN, END or VERSION: not searched
    Version version = Version::Later;
    std::size_t card = 0; ///< the number of the card, of all in the text
    bool hasHeader = false;
    Coding coding = Coding::Plain;
    bool hasCharset = false;
    const Charset* charset = nullptr; ///< that the line names, if it is known
    Passed passed = Passed::No;
};

/// A logical line, or a part of one. What it points to is valid until the next call of the reader.
struct RawLine {
    std::string_view raw;    ///< all its bytes
    std::size_t endSize = 0; ///< those at the end of `raw` that end the logical line
    std::string_view joined; ///< the rest of them, without folds
    std::vector<Fold> folds;
    Header header; ///< its places are in `joined`; only the first part has one
    LineContext context;
    bool begins = true;         ///< this is the first part
    bool ends = true;           ///< this is the last part
    bool isPassedValue = false; ///< a part of a value that is not searched; `joined` is not set
    bool isFolded = false;      ///< not only by soft breaks
    bool followsBase64 = false; ///< so that a line of letters of base64 would belong to that

    std::string room; ///< of `joined`, where there are folds
};

/// Cuts the text of a file into logical lines. Values that are not searched come in parts of any
/// size, after their headers. So do very long lines: their user takes as much as it can work on and
/// leaves the rest.
class LineReader {
public:
    /// Finds charsets by their names; they must live as long as the reader.
    class CharsetsByName {
    public:
        virtual ~CharsetsByName() = default;
        /// Null for one that values are not searched in.
        virtual const Charset* Named(std::string_view name) = 0;
    };

    /// With `hasMark`, the text's charset is known, and others count for coded values only.
    LineReader(FileText& text, CharsetsByName& charsets, bool hasMark)
        : text_(text), charsets_(charsets), hasMark_(hasMark) {}

    /// Shows the lines that come next and that `plain`, which is made for the cards of this reader,
    /// skims over; empty if there are none.
    std::string_view NextPlain(PlainLines& plain);

    /// False at the end of the text.
    bool Next(RawLine& line);

    /// Takes only the first bytes of the line that was shown; the rest of it comes next.
    void Take(const RawLine& line, std::size_t bytes);

    /// Reads `raw`, which is to take the place of the line that was shown last but for its end, as
    /// it would be read there: `line` gets what it is then. False when it is not one line any more
    /// that is read alike, or when a line around it would not be.
    bool ReadAgain(std::string_view raw, const RawLine& before, RawLine& line) const;

    OpenCards& Cards() { return cards_; }

private:
    struct Joined;
    enum class Link { None, Fold, SoftBreak, Base64, Unknown };

    static Link LinkBehind(std::string_view window, bool atEnd, const PhysicalLine& last,
                           const LineContext& context);
    static bool ScanPassedValue(std::string_view window, bool atEnd, RawLine& line);
    static std::size_t Join(std::string_view window, Link link, const PhysicalLine& last,
                            PhysicalLine& next, RawLine& line);
    static void PassWhole(std::string_view raw, RawLine& line);
    static bool LookForQuote(std::string_view window, bool atEnd, PhysicalLine last,
                             const RawLine& line, std::size_t& place);
    static bool LookIntoValue(std::string_view window, bool atEnd, std::size_t value,
                              RawLine& line);

    void SkipShown();
    bool Scan(std::string_view window, bool atEnd, RawLine& line);
    bool ScanText(std::string_view window, bool atEnd, const PhysicalLine& first, std::size_t most,
                  RawLine& line) const;
    bool LookForHeader(std::string_view window, bool atEnd, std::size_t most, Joined& joined,
                       RawLine& line) const;
    bool TouchesNeighbours(const RawLine& before, const RawLine& line) const;
    bool ReadHeaderOf(std::string_view window, bool atEnd, const PhysicalLine& last,
                      std::size_t& quote, RawLine& line) const;
    void Enter(Frame frame, RawLine& line);

    FileText& text_;
    CharsetsByName& charsets_;
    bool hasMark_;
    OpenCards cards_;
    bool wasEmptyAgent_ = false;
    bool wasBase64_ = false;
    std::string_view window_;     // in which the line lies that was shown last, at its front
    std::uint64_t position_ = 0;  // of what was shown last, or comes next
    std::size_t shown_ = 0;       // bytes to be skipped before what comes next
    bool isWithin_ = false;       // what comes next goes on with a line
    bool isWithinPassed_ = false; // in its value, which is not searched
    LineContext context_;         // of that line
};

} // namespace vexmarrow::vcard

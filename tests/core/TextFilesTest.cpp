// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Core.h"
#include "engine/TextResult.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vexmarrow::test {
namespace {

struct TextFilesTest : Core {
    static Texts All(TextPieces pieces) {
        Texts all;
        for (std::u16string_view piece; pieces.Next(piece);) {
            all.emplace_back(piece);
        }
        return all;
    }
    using Writes = std::vector<std::pair<int, std::u16string>>;

    Texts Lines(const std::string& bytes) {
        folder.Write("f", bytes);
        return textio.ReadTextLines(folder.Path("f"));
    }
    Texts Pieces(const std::string& bytes) {
        folder.Write("f", bytes);
        return All(textio.ReadTextChunks(folder.Path("f")));
    }
    /// Writes texts with their modes; the reason of the failure, if there was one.
    std::string Write(const std::string& name, const Writes& writes) {
        TextResult result(textio, writer);
        try {
            for (const auto& [mode, text] : writes) {
                result.WriteTextFile(text, folder.Path(name), mode);
            }
            result.Seal(1);
            result.Commit(1);
            return result.Failed() ? NativeName(result.Failed()->description) : "";
        } catch (const Failure& failure) {
            return NativeName(failure.Description());
        }
    }
    std::string Content() const { return folder.Exists("f") ? folder.Read("f") : kNoFile; }
};

TEST_F(TextFilesTest, TheFirstBytesTellTheEncoding) {
    const struct {
        const char* encoding;
        bool isUnicode, isUtf8;
        Strings beginnings;
    } rows[] = {
        {"UTF-16", true, false, {kMark16, kMark16 + "\0\0"s, "\xFE\xFF\0a"s, "\0\0\xFE\xFF"s}},
        {"UTF-8", false, true, {kMark8, kMark8 + kMark16}},
        {"none", false, false, {"", "\xFF", "\xFE", "\0\0\xFE"s, "\0\0\xFF\xFE"s, "\xEF\xBB"}},
        {"text", false, false, {"a" + kMark8, "BEGIN"}},
    };
    for (const auto& row : rows) {
        for (const std::string& bytes : row.beginnings) {
            SCOPED_TRACE(row.encoding + (": " + testing::PrintToString(bytes)));
            for (const bool before : {false, true}) {
                calls.mostAtOnce = before ? 1 : 1000; // a short count changes nothing
                flags = {before, before};
                folder.Write("f", bytes);
                EXPECT_EQ(textio.DetectTextEncoding(folder.Path("f")), row.isUnicode);
                EXPECT_EQ(flags.IsUtf8, row.isUtf8);
                EXPECT_EQ(flags.IsUnicode, before) << "only reading text sets it";
                for (const bool lines : {false, true}) {
                    flags = {before, before};
                    lines ? Lines(bytes) : Pieces(bytes);
                    EXPECT_EQ(flags.IsUtf8, row.isUtf8);
                    EXPECT_EQ(flags.IsUnicode, row.isUnicode);
                }
            }
        }
    }
}

TEST_F(TextFilesTest, LineEnds) {
    using LinesOfTexts = std::map<std::u16string, Texts>;
    const LinesOfTexts bytesOrUtf16{
        {u"", {u""}},
        {u"a\r\nb\nc\rd", {u"a", u"b", u"c", u"d"}},
        {u"a\r\nb\r\n", {u"a", u"b"}},
        {u"\r\n", {u""}},
        {u"a\n\r\n\r", {u"a", u"", u""}},
        {u"\r\r\n\nb", {u"", u"", u"", u"b"}},
        {u"a\r\r\r\nb", {u"a", u"", u"", u"b"}},
        {u": :\r\n x", {u": :", u" x"}},
    };
    for (const auto& [text, lines] : bytesOrUtf16) {
        SCOPED_TRACE(testing::PrintToString(NativeName(text)));
        EXPECT_EQ(Lines(NativeName(text)), lines);
        EXPECT_EQ(Lines(Utf16(text)), lines);
    }
    // In UTF-8 only CR LF ends a line, and another one follows it.
    const LinesOfTexts utf8{
        {u"", {u""}},
        {u"a\r\nb\r\n", {u"a", u"b", u""}},
        {u"\r\n", {u"", u""}},
        {u"a\nb\rc\n", {u"a\nb\rc\n"}},
        {u"a\r\n\nb", {u"a", u"\nb"}},
        {u"\r\r\n", {u"\r", u""}},
    };
    for (const auto& [text, lines] : utf8) {
        EXPECT_EQ(Lines(kMark8 + NativeName(text)), lines)
            << testing::PrintToString(NativeName(text));
    }
}

TEST_F(TextFilesTest, CharactersOfEachEncoding) {
    for (const std::string& mark : {""s, kMark8}) { // a read that ends between CR and LF
        calls.mostAtOnce = mark.size() + 5001;
        EXPECT_EQ(Lines(mark + std::string(5000, 'x') + "\r\nb"),
                  (Texts{std::u16string(5000, u'x'), u"b"}));
    }
    calls.mostAtOnce = 1000;
    const struct {
        const char* name;
        std::string bytes;
        std::u16string text;
    } rows[] = {
        {"bytes", "\xE9\x81\0:"s, u"\u00E9\u0081\0:"s},
        {"UTF-8", kMark8 + kMark8 + "é\xE2\x82\xFF", u"\uFEFF\u00E9\uFFFD\uFFFD"},
        {"one mark is skipped", Utf16(u"\uFEFF\u0D0A"), u"\uFEFF\u0D0A"},
        {"lone last byte", Utf16(u"a") + "\xE9", u"a\u00E9"},
        {"halves", kMark16 + "\0\xD8"s + "a\0\0\xDC"s, {0xD800, u'a', 0xDC00}},
        {"the other byte order", "\xFE\xFF\0a"s, u"\uFFFE\u6100"},
        {"32 bits", Utf16(u"\0a\0"s), u"\0a\0"s},
        {"32 bits in the other order", "\0\0\xFE\xFF\0\0\0a"s, u"\0\uFFFE\0\u6100"s},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Lines(row.bytes), Texts{row.text});
        EXPECT_EQ(Pieces(row.bytes), Texts{row.text});
    }
}

TEST_F(TextFilesTest, TheFlagsTellHowFarAFailedReadCame) {
    const struct {
        const char* name;
        Calls::Kind kind;
        int call;
        bool isDetected; // by then
    } rows[] = {{"opening", Calls::kOpen, 1, false},
                {"looking at the file", Calls::kStatus, 1, false},
                {"first byte of a mark", Calls::kRead, 1, false},
                {"last byte of a mark", Calls::kRead, 4, false},
                {"first byte again", Calls::kRead, 5, true},
                {"further byte", Calls::kRead, 7, true}};
    for (const auto& row : rows) {
        for (const bool unicode : {false, true}) {
            SCOPED_TRACE(row.name);
            calls = FaultySystemCalls();
            calls.mostAtOnce = 1;
            calls.FailAt(row.kind, row.call, EIO);
            flags = {true, !unicode}; // the opposite of what will be found
            EXPECT_THROW(Lines(unicode ? Utf16(u"abc") : "abcdefgh"), Failure);
            EXPECT_FALSE(flags.IsUtf8);
            EXPECT_EQ(flags.IsUnicode, row.isDetected == unicode);
            EXPECT_EQ(calls.openFiles, 0);
        }
    }
    calls = FaultySystemCalls();
    calls.FailAt(Calls::kRead, 1, EINTR); // an interruption is no failure
    EXPECT_EQ(Lines("text"), Texts{u"text"});
}

TEST_F(TextFilesTest, OnlyRegularFilesThatMayBeUsedAndTheReasonIsTold) {
    folder.Write("file", "old");
    folder.Write("locked", "old");
    folder.SetMode("locked", 0);
    folder.Write("closed/open", "old");
    folder.SetMode("closed/open", 0666);
    folder.SetMode("closed", 0555);
    folder.MakeFolder("folder");
    ::mkfifo(folder.Native("pipe").c_str(), 0666); // waiting for its other end would be forever
    ::mkfifo(folder.Native("read").c_str(), 0666);
    const int reader = ::open(folder.Native("read").c_str(), O_RDONLY | O_NONBLOCK);
    folder.MakeLink("nowhere", "gone");
    const Strings names = folder.Names();
    {
        const Unprivileged unprivileged;
        for (const std::string& name : Strings{"locked", "closed/new", "folder", "folder/", "pipe",
                                               "read", "nowhere", "gone/f", "file/f", "file\0x"s}) {
            const auto tells = testing::HasSubstr("\"" + folder.Native(name) + "\": ");
            EXPECT_THAT(Write(name, {{1, u"new"}}), tells);
            EXPECT_THAT(Write(name, {{2, u"new"}}), tells);
            EXPECT_THROW(textio.ReadChunksByStream(folder.Path(name)), Failure) << name;
            try {
                textio.ReadTextChunks(folder.Path(name));
                ADD_FAILURE() << name << " was read";
            } catch (const Failure& failure) {
                EXPECT_THAT(NativeName(failure.Description()), tells);
            }
        }
        EXPECT_EQ(Write("closed/open", {{1, u"new"}}), ""); // needs no writable folder
    }
    ::close(reader);
    calls.calls.clear();
    EXPECT_EQ(textio.FileSize2(folder.Path("pipe")) + textio.FileSize2(folder.Path("folder")), -2);
    EXPECT_EQ(calls.calls[Calls::kOpen], 0) << "a pipe's writer takes an opening for a reader";
    calls.beforeCall = [&](Calls::Kind kind) {
        if (kind == Calls::kOpen) {
            ::rename(folder.Native("pipe").c_str(), folder.Native("swapped").c_str());
        }
    };
    folder.Write("swapped", "a file when it was looked at");
    EXPECT_EQ(textio.FileSize2(folder.Path("swapped")), -1);
    calls.beforeCall = nullptr;
    ::rename(folder.Native("swapped").c_str(), folder.Native("pipe").c_str());
    EXPECT_EQ(folder.Names(), names);
    EXPECT_EQ(folder.Names("closed"), Strings{"open"});
    folder.SetMode("locked", 0600);
    EXPECT_EQ(folder.Read("file") + folder.Read("locked"), "oldold");
    writer.Settle();
    EXPECT_EQ(calls.openFiles, 0);
}

TEST_F(TextFilesTest, WriteModesAndMarks) {
    enum Form { kBytes, kUtf16 };
    enum Mode { kNew = 1, kEnd = 2 };
    const struct {
        const char* name;
        std::string before;
        Form form;
        Writes writes;
        std::string after;
    } rows[] = {
        {"new", kNoFile, kBytes, {{kNew, u"ab"}}, "ab"},
        {"new in UTF-16", kNoFile, kUtf16, {{kNew, u"ab"}}, Utf16(u"ab")},
        {"nothing is written", kNoFile, kBytes, {}, kNoFile},
        {"no text in UTF-16", "old", kUtf16, {{kNew, u""}}, kMark16},
        {"lower mode", "old", kBytes, {{kNew - 1, u"n"}}, "n"},
        {"after the old text", "old", kBytes, {{kEnd, u"n"}}, "oldn"},
        {"higher mode in UTF-16: no mark", "old", kUtf16, {{kEnd + 1, u"n"}}, "oldn\0"s},
        {"after no text: no mark", "", kUtf16, {{kEnd, u"n"}}, "n\0"s},
        {"after no file: a mark", kNoFile, kUtf16, {{kEnd, u"n"}}, Utf16(u"n")},
        {"several", "old", kBytes, {{kNew, u"a"}, {kEnd, u"\r\n"}, {kEnd, u"b"}}, "a\r\nb"},
        {"an empty one", "old", kUtf16, {{kNew, u"a"}, {kEnd, u""}, {kEnd, u"b"}}, Utf16(u"ab")},
        {"a new one again", "old", kUtf16, {{kNew, u"a"}, {kEnd, u"b"}, {kNew, u"c"}}, Utf16(u"c")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        flags.IsUnicode = row.form == kUtf16;
        row.before == kNoFile ? folder.Remove("f") : folder.Write("f", row.before);
        TextResult(textio, writer).WriteTextFile(u"dropped before the commit", folder.Path("f"), 1);
        EXPECT_EQ(Content(), row.before);
        EXPECT_EQ(Write("f", row.writes), "");
        EXPECT_EQ(Content(), row.after);
    }
    Write("f", {{1, {0xD800, u'a'}}});
    EXPECT_EQ(Content(), kMark16 + "\0\xD8"s + "a\0"s);
    flags.IsUnicode = false;
    Write("f", {{-7, u"\u0416\U0001F600\u00E9\u0081"}});
    EXPECT_EQ(Content(), "???\xE9\x81");
}

} // namespace
} // namespace vexmarrow::test

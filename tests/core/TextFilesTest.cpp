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
    std::string Content() const { return folder.Exists("f") ? folder.Read("f") : "-"; }
};

TEST_F(TextFilesTest, MarksInTheOrderOfTheirTests) {
    // Bytes in hexadecimal, and the flag that they set.
    for (const std::string& row : Rows(R"(
             | FF| FFFE|16 FFFE00|16 FFFE0000|16 FEFF|16 FEFF0061|16 FE| 0000FEFF|16 0000FE|
             0000FFFE| EFBBBF|8 EFBBBFFFFE|8 EFBB| 61EFBBBF| 424547494E|)")) {
        const std::string hex = Fields(row)[0], flag = Fields(row)[1];
        std::string bytes;
        for (std::size_t i = 0; i < hex.size(); i += 2) {
            bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
        }
        for (const bool before : {false, true}) {
            calls.mostAtOnce = before ? 1 : 1000; // a short count changes nothing
            flags = {before, before};
            folder.Write("f", bytes);
            EXPECT_EQ(textio.DetectTextEncoding(folder.Path("f")), flag == "16") << row;
            EXPECT_EQ(flags.IsUtf8, flag == "8") << row;
            EXPECT_EQ(flags.IsUnicode, before) << "only reading text sets it";
            for (const bool lines : {false, true}) {
                flags = {before, before};
                lines ? Lines(bytes) : Pieces(bytes);
                EXPECT_TRUE(flags.IsUtf8 == (flag == "8") && flags.IsUnicode == (flag == "16"))
                    << row;
            }
        }
    }
}

TEST_F(TextFilesTest, Lines) {
    // A text and its lines, in a stream of either width and then in UTF-8.
    for (const std::string& row : Rows("| a|a a~b^c<d|a|b|c|d a~b~|a|b a^|a <| ~| a^~<|a|| "
                                       "<~^b^||||b a<<~b|a|||b :_:~_x|:_:|_x")) {
        const Texts texts = TextsOf(Fields(row)), expected(texts.begin() + 1, texts.end());
        EXPECT_EQ(Lines(NativeName(texts[0])), expected) << row;
        EXPECT_EQ(Lines(Utf16(texts[0])), expected) << row;
    }
    for (const std::string& row : Rows("| a~b~|a|b| ~|| a^b<c^|a^b<c^ a~^b|a|^b <~|<| a|a")) {
        const Texts texts = TextsOf(Fields(row)), expected(texts.begin() + 1, texts.end());
        EXPECT_EQ(Lines(kMark8 + NativeName(texts[0])), expected) << row;
    }
    for (const std::string& mark : {""s, kMark8}) { // a read that ends between CR and LF
        calls.mostAtOnce = mark.size() + 5001;
        EXPECT_EQ(Lines(mark + std::string(5000, 'x') + "\r\nb"),
                  (Texts{std::u16string(5000, u'x'), u"b"}));
    }
    calls.mostAtOnce = 1000;
    const std::map<std::string, std::u16string> units{
        {"\xE9\x81\0:"s, u"\u00E9\u0081\0:"s},
        {kMark8 + kMark8 + "\xC3\xA9\xE2\x82\xFF", u"\uFEFF\u00E9\uFFFD\uFFFD"},
        {Utf16(u"\uFEFF\u0D0A"), u"\uFEFF\u0D0A"}, // one mark is skipped
        {Utf16(u"a") + "\xE9", u"a\u00E9"},        // a lone last byte
        {kMark16 + "\0\xD8"s + "a\0\0\xDC"s, {0xD800, u'a', 0xDC00}},
        {"\xFE\xFF\0a"s, u"\uFFFE\u6100"}, // the other byte order
        {Utf16(u"\0a\0"s), u"\0a\0"s},     // 32 bits, in both orders
        {"\0\0\xFE\xFF\0\0\0a"s, u"\0\uFFFE\0\u6100"s}};
    for (const auto& [bytes, text] : units) {
        EXPECT_EQ(Lines(bytes), Texts{text});
        EXPECT_EQ(Pieces(bytes), Texts{text});
    }
}

TEST_F(TextFilesTest, TheFlagsTellHowFarAFailedReadCame) {
    const struct {
        Calls::Kind kind;
        int call;
        bool detected;
    } rows[] = {{Calls::kOpen, 1, false}, {Calls::kStatus, 1, false}, {Calls::kRead, 1, false},
                {Calls::kRead, 4, false}, {Calls::kRead, 5, true},    {Calls::kRead, 7, true}};
    for (const auto& row : rows) {
        for (const bool unicode : {false, true}) {
            calls = FaultySystemCalls();
            calls.mostAtOnce = 1;
            calls.FailAt(row.kind, row.call, EIO);
            flags = {true, !unicode}; // the opposite of what will be found
            EXPECT_THROW(Lines(unicode ? Utf16(u"abc") : "abcdefgh"), Failure);
            EXPECT_FALSE(flags.IsUtf8);
            EXPECT_EQ(flags.IsUnicode, row.detected == unicode) << row.kind << " " << row.call;
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
    // What the file holds before ("-": there is none); A or U for the flag; modes with their texts;
    // what it holds then: M stands for the mark, 0 for a zero byte.
    for (const std::string& row : Rows(R"(
             -|A|1ab|ab -|U|1ab|Ma0b0 -|A||- old|U||old old|A|1| old|U|1|M old|A|0n|n
             old|U|0n|Mn0 old|A|2n|oldn old|U|3n|oldn0 |U|2n|n0 -|A|2n|n -|U|2n|Mn0
             older|A|1a,2~,3b|a~b o|U|1a,2,3b|Ma0b0 old|U|1a,2b,1c|Mc0)")) {
        const Strings fields = Fields(row);
        flags.IsUnicode = fields[1] == "U";
        fields[0] == "-" ? folder.Remove("f") : folder.Write("f", fields[0]);
        Writes writes;
        std::istringstream stream(fields[2]);
        for (std::string write; std::getline(stream, write, ',');) {
            writes.emplace_back(write[0] - '0', TextFromUtf8(write.substr(1)));
        }
        TextResult(textio, writer).WriteTextFile(u"dropped before the commit", folder.Path("f"), 1);
        EXPECT_EQ(Content(), fields[0]) << row;
        EXPECT_EQ(Write("f", writes), "");
        std::string holds = Content();
        std::replace(holds.begin(), holds.end(), '\0', '0');
        EXPECT_EQ((holds.starts_with(kMark16) ? "M" + holds.substr(2) : holds), fields[3]) << row;
    }
    Write("f", {{1, {0xD800, u'a'}}});
    EXPECT_EQ(Content(), kMark16 + "\0\xD8"s + "a\0"s);
    flags.IsUnicode = false;
    Write("f", {{-7, u"\u0416\U0001F600\u00E9\u0081"}});
    EXPECT_EQ(Content(), "???\xE9\x81");
}

} // namespace
} // namespace vexmarrow::test

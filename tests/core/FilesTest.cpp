// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Core.h"
#include "textio/FileAttributes.h"
#include "textio/FolderListing.h"
#include "textio/PathChecks.h"
#include "textio/Paths.h"

#include <sys/stat.h>

namespace vexmarrow::test {
namespace {

TEST(Paths, InBothStyles) {
    // Path, its folder, normalised; normalised where "/" stands in place of "\".
    for (const std::string& row : Rows(R"(
             ||| b.vcf||b.vcf|b.vcf C:\a\\b.vcf|C:\a\\|C:\a\b.vcf|C:/a/b.vcf C:\|C:\|C:\|C:/
             a\\\b|a\\\|a\\b|a/b a\\\\b|a\\\\|a\\b|a/b \a|\|\\a|/a \\srv\a|\\srv\|\\srv\a|/srv/a
             \\srv\\share\a|\\srv\\share\|\\srv\share\a|/srv/share/a \\\srv\a|\\\srv\|\\srv\a|/srv/a
             \|\|\\|/ \\\|\\\|\\|/)")) {
        std::string slashed = row;
        std::replace(slashed.begin(), slashed.end(), '\\', '/');
        const Strings fields = Fields(row), posix = Fields(slashed);
        const std::u16string path = TextFromUtf8(fields[0]), posixPath = TextFromUtf8(posix[0]);
        EXPECT_EQ(NativeName(FolderOfPath(path, PathStyle::Windows)), fields[1]) << row;
        EXPECT_EQ(NativeName(FolderOfPath(posixPath, PathStyle::Posix)), posix[1]) << row;
        EXPECT_EQ(NativeName(NormalizePath(path, PathStyle::Windows)), fields[2]) << row;
        EXPECT_EQ(NativeName(NormalizePath(posixPath, PathStyle::Posix)), fields[3]) << row;
    }
    EXPECT_EQ(NormalizePath(u"a\\\\b//c", PathStyle::Posix), u"a\\\\b/c");
}

struct Files : Core {};

TEST_F(Files, TestsOfEveryKind) {
    folder.Write("file", "12345");
    folder.Write("locked", "1");
    folder.SetMode("locked", 0);
    folder.MakeFolder("folder");
    ::mkfifo(folder.Native("pipe").c_str(), 0666);
    folder.MakeLink("link", "file");
    folder.MakeLink("folderlink", "folder");
    folder.MakeLink("nowhere", "missing");
    for (const std::string& size : Rows("0 2147483648 4294967295 4294967296 4294967297")) {
        folder.Write(size, "");
        std::filesystem::resize_file(folder.Native(size), std::stoull(size)); // sparse
    }
    const Unprivileged unprivileged;
    // Name; whether it is a folder, a file, there at all; size.
    for (const std::string& row : Rows(R"(
             file|011|5 locked|011|-1 link|011|5 folder|101|-1 folder/|101|-1 folderlink|101|-1
             pipe|001|-1 missing|000|-1 nowhere|000|-1 file/|000|-1 0|011|0 4294967295|011|-1
             2147483648|011|-2147483648 4294967296|011|0 4294967297|011|1)")) {
        const std::string name = Fields(row)[0];
        const std::u16string path = folder.Path(name);
        std::string found = name + (IsFolder(calls, path) ? "|1" : "|0");
        found += IsExistingFile(calls, path) ? "1" : "0";
        found += IsExistingPath(calls, path) ? "1|" : "0|";
        EXPECT_EQ(found + std::to_string(textio.FileSize2(path)), row);
    }
    for (const std::u16string& path : {u""s, folder.Path("file\0x"s), folder.Path("folder\0x"s)}) {
        EXPECT_FALSE(IsFolder(calls, path) || IsExistingPath(calls, path) ||
                     textio.FileSize2(path) != -1);
    }
}

TEST_F(Files, WhatWasOpenedForItsSizeIsReadUnderItsOwnPathAlone) {
    folder.Write("f", "first");
    folder.Write("g", "other");
    std::filesystem::create_hard_link(folder.Native("f"), folder.Native("same"));
    for (const auto use : {InputFile::Use::Read, InputFile::Use::ReadAndWrite}) {
        for (const std::string& name : Rows("f g same")) { // the last is locked until it is closed
            const int opened = calls.calls[Calls::kOpen];
            EXPECT_EQ(textio.FileSize2(folder.Path("f"), use), 5);
            TextPieces pieces = textio.ReadChunksByStream(folder.Path(name), use);
            std::u16string_view piece;
            EXPECT_TRUE(pieces.Next(piece));
            EXPECT_EQ(NativeName(piece), folder.Read(name)) << name;
            EXPECT_EQ(calls.calls[Calls::kOpen] - opened, name == "f" ? 1 : 2);
        }
    }
}

TEST_F(Files, Listing) {
    const std::string names = "a.vcf B.VCF .hidden.vcf c.vcf.txt vcf .vcf caf\xE9.vCf a.b.vcf vcff";
    for (const std::string& name : Rows(names)) {
        folder.Write(name, "x");
    }
    folder.MakeFolder("folder.vcf");
    folder.MakeLink("link.vcf", "a.vcf");
    folder.MakeLink("nowhere.vcf", "gone");
    const auto matches = [&](std::u16string_view pattern) {
        Strings found;
        for (const std::u16string& name : ListFilesInFolder(calls, folder.Path(), pattern)) {
            found.push_back(NativeName(name));
            EXPECT_EQ(textio.FileSize2(folder.Path() + u"/" + name), name.empty() ? -1 : 1);
        }
        EXPECT_EQ(found.at(0), "") << "names are elements 1 and up";
        std::sort(found.begin(), found.end());
        return Strings(found.begin() + 1, found.end());
    };
    EXPECT_EQ(matches(u"*.vcf"), Rows(".hidden.vcf .vcf B.VCF a.b.vcf a.vcf caf\xE9.vCf link.vcf"));
    EXPECT_EQ(matches(u"?.VCF"), Rows("B.VCF a.vcf"));
    EXPECT_EQ(matches(u"a*b*"), Rows("a.b.vcf"));
    EXPECT_EQ(matches(u"*.*").size(), 10U);
    EXPECT_EQ(matches(u"*.none"), Strings{});
    for (int i = 0; i < 101; ++i) {
        folder.Write("many/" + std::to_string(i), "");
    }
    EXPECT_EQ(ListFilesInFolder(calls, folder.Path("many/"), u"*").size(), 102U);
    EXPECT_THROW(ListFilesInFolder(calls, folder.Path("gone"), u"*"), Failure);
}

TEST_F(Files, UnusualCharacters) {
    const auto page = MakeSingleByteCodePage(u"windows-1252");
    EXPECT_FALSE(HasUnusualCharacters(u" ~caf\u00E9\u00A0\u00FF", *page));
    // The euro sign has a code from 127 to 159; the page lacks the last two.
    for (const char16_t unusual : u"\t\x1F?\x7F\u20AC\u0081\u0178\u0416\xDCE9"s) {
        EXPECT_TRUE(HasUnusualCharacters(std::u16string{u'a', unusual}, *page))
            << static_cast<int>(unusual);
    }
    const auto utf8 = MakeUtf8CodePage();
    EXPECT_FALSE(HasUnusualCharacters(u" ~caf\u00E9\u20AC\u0178\u0416\U0001F600\xDCE9", *utf8));
    for (const char16_t unusual : u"\t\x1F?\x7F\u0081\u009F"s) {
        EXPECT_TRUE(HasUnusualCharacters(std::u16string{u'a', unusual}, *utf8))
            << static_cast<int>(unusual);
    }
}

TEST_F(Files, Attributes) {
    folder.Write("f", "");
    folder.Write(".f", "");
    folder.MakeFolder(".d");
    folder.MakeLink("link", ".f");
    const auto attributes = [&](std::string_view name) {
        return FileAttributes(calls, folder.Path(name));
    };
    EXPECT_EQ(attributes(".f"), 34);
    EXPECT_EQ(attributes(".d/"), 18);
    EXPECT_EQ(attributes("link"), 32);
    EXPECT_EQ(attributes("missing") | attributes("f\0x"s), 0);
    folder.SetMode(".f", 0466); // the owner's bit counts
    EXPECT_EQ(attributes(".f"), 35);
    const std::string record("\0\0\3\0\3\0\0\0\1\0\0\0\x16\4\0\0", 16);
    const std::map<std::string, int> values{
        {"0x416", 1046}, {"0x", 32}, {"", 32}, {record, 1046}, {record.substr(0, 12), 32}};
    for (const auto& [value, word] : values) {
        calls.attributes = {{{folder.Native("f"), "user.DOSATTRIB"}, value}};
        EXPECT_EQ(attributes("f"), word) << testing::PrintToString(value);
    }
    calls.attributes = {{{folder.Native("f"), "system.ntfs_attrib_be"}, "\0\0\4\x16"s}};
    EXPECT_EQ(attributes("f"), 1046);
}

} // namespace
} // namespace vexmarrow::test

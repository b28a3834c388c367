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
    const struct {
        std::u16string path, folder, windows, posix; // normalised; "/" stands for "\" in the last
    } rows[] = {
        {u"", u"", u"", u""},
        {u"b.vcf", u"", u"b.vcf", u"b.vcf"},
        {uR"(C:\a\\b.vcf)", uR"(C:\a\\)", uR"(C:\a\b.vcf)", u"C:/a/b.vcf"},
        {uR"(C:\)", uR"(C:\)", uR"(C:\)", u"C:/"},
        {uR"(a\\\b)", uR"(a\\\)", uR"(a\\b)", u"a/b"},
        {uR"(a\\\\b)", uR"(a\\\\)", uR"(a\\b)", u"a/b"},
        {uR"(\a)", uR"(\)", uR"(\\a)", u"/a"},
        {uR"(\\srv\a)", uR"(\\srv\)", uR"(\\srv\a)", u"/srv/a"},
        {uR"(\\srv\\share\a)", uR"(\\srv\\share\)", uR"(\\srv\share\a)", u"/srv/share/a"},
        {uR"(\\\srv\a)", uR"(\\\srv\)", uR"(\\srv\a)", u"/srv/a"},
        {uR"(\)", uR"(\)", uR"(\\)", u"/"},
        {uR"(\\\)", uR"(\\\)", uR"(\\)", u"/"},
    };
    const auto slashed = [](std::u16string text) {
        std::replace(text.begin(), text.end(), u'\\', u'/');
        return text;
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(NativeName(row.path));
        EXPECT_EQ(FolderOfPath(row.path, PathStyle::Windows), row.folder);
        EXPECT_EQ(FolderOfPath(slashed(row.path), PathStyle::Posix), slashed(row.folder));
        EXPECT_EQ(NormalizePath(row.path, PathStyle::Windows), row.windows);
        EXPECT_EQ(NormalizePath(slashed(row.path), PathStyle::Posix), row.posix);
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
    folder.MakeLink("nowhere", "missing");
    enum Kind { kMissing, kOther, kFolder, kFile };
    constexpr int kNone = -1;
    const struct {
        std::string name;
        Kind kind;
        int size;                   // modulo 2^32, and beyond 2^31 negative
        std::uint64_t realSize = 0; // of a file that is made
    } rows[] = {
        {"file", kFile, 5},
        {"locked", kFile, kNone},
        {"link", kFile, 5},
        {"folder", kFolder, kNone},
        {"folder/", kFolder, kNone},
        {"pipe", kOther, kNone},
        {"missing", kMissing, kNone},
        {"nowhere", kMissing, kNone},
        {"file/", kMissing, kNone},
        {"2 GiB", kFile, INT32_MIN, std::uint64_t{1} << 31},
        {"more than 4 GiB", kFile, 1, (std::uint64_t{1} << 32) + 1},
    };
    for (const auto& row : rows) {
        if (row.realSize > 0) {
            folder.Write(row.name, "");
            std::filesystem::resize_file(folder.Native(row.name), row.realSize); // sparse
        }
    }
    const Unprivileged unprivileged;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::u16string path = folder.Path(row.name);
        EXPECT_EQ(IsFolder(calls, path), row.kind == kFolder);
        EXPECT_EQ(IsExistingFile(calls, path), row.kind == kFile);
        EXPECT_EQ(IsExistingPath(calls, path), row.kind != kMissing);
        EXPECT_EQ(textio.FileSize2(path), row.size);
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
        for (const char* name : {"f", "g", "same"}) { // the last is locked until it is closed
            const int opened = calls.calls[Calls::kOpen];
            EXPECT_EQ(textio.FileSize2(folder.Path("f"), use), 5);
            TextPieces pieces = textio.ReadChunksByStream(folder.Path(name), use);
            std::u16string_view piece;
            EXPECT_TRUE(pieces.Next(piece));
            EXPECT_EQ(NativeName(piece), folder.Read(name)) << name;
            EXPECT_EQ(calls.calls[Calls::kOpen] - opened, name == "f"s ? 1 : 2);
        }
    }
}

TEST_F(Files, Listing) {
    for (const char* name : {"a.vcf", "B.VCF", ".hidden.vcf", "c.vcf.txt", "vcf", ".vcf",
                             "caf\xE9.vCf", "a.b.vcf", "vcff"}) {
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
    EXPECT_EQ(matches(u"*.vcf"), (Strings{".hidden.vcf", ".vcf", "B.VCF", "a.b.vcf", "a.vcf",
                                          "caf\xE9.vCf", "link.vcf"}));
    EXPECT_EQ(matches(u"?.VCF"), (Strings{"B.VCF", "a.vcf"}));
    EXPECT_EQ(matches(u"a*b*"), Strings{"a.b.vcf"});
    EXPECT_EQ(matches(u"*.*"), matches(u"*")) << "those without a dot, too";
    EXPECT_THAT(matches(u"*"), testing::IsSupersetOf({"vcf", "vcff"}));
    EXPECT_EQ(matches(u"*.none"), Strings{});
    constexpr std::size_t kMany = 101;
    for (std::size_t i = 0; i < kMany; ++i) {
        folder.Write("many/" + std::to_string(i), "");
    }
    EXPECT_EQ(ListFilesInFolder(calls, folder.Path("many/"), u"*").size(), 1 + kMany);
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
    EXPECT_EQ(attributes(".f"), kHidden | kArchive);
    EXPECT_EQ(attributes(".d/"), kHidden | kDirectory);
    EXPECT_EQ(attributes("link"), kArchive);
    EXPECT_EQ(attributes("missing") | attributes("f\0x"s), 0);
    folder.SetMode(".f", 0466); // the owner's bit counts
    EXPECT_EQ(attributes(".f"), kReadOnly | kHidden | kArchive);
    constexpr int kLinkedSystemFolder = kReparsePoint | kDirectory | kSystem | kHidden; // 0x416
    const std::string record("\0\0\3\0\3\0\0\0\1\0\0\0\x16\4\0\0", 16);
    const struct {
        const char* name;
        std::string attribute, value;
        int attributes;
    } rows[] = {
        {"number", "user.DOSATTRIB", "0x416", kLinkedSystemFolder},
        {"record", "user.DOSATTRIB", record, kLinkedSystemFolder},
        {"bytes of NTFS", "system.ntfs_attrib_be", "\0\0\4\x16"s, kLinkedSystemFolder},
        {"no number", "user.DOSATTRIB", "0x", kArchive},
        {"empty", "user.DOSATTRIB", "", kArchive},
        {"record that is cut", "user.DOSATTRIB", record.substr(0, 12), kArchive},
    };
    for (const auto& row : rows) {
        calls.attributes = {{{folder.Native("f"), row.attribute}, row.value}};
        EXPECT_EQ(attributes("f"), row.attributes) << row.name;
    }
}

} // namespace
} // namespace vexmarrow::test

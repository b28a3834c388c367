// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "core/Safety.h"

#include <fcntl.h>
#include <random>
#include <set>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace vexmarrow::test {
namespace {

/// A file or link as it is to come back.
struct Entry {
    std::string bytes; ///< or where a link leads
    mode_t mode = 0;
    uid_t owner = 0;
    gid_t group = 0;
    ino_t inode = 0;
    std::int64_t date = 0;
    std::string note; ///< an extended attribute

    bool operator==(const Entry&) const = default;
};
using Tree = std::map<std::string, Entry>;

/// Files of all kinds in two folders; runs over them, and what other programs do in between.
struct TakingBackTest : Safety {
    std::mt19937 random; // NOLINT(cert-msc51-cpp): the same trees each time
    FaultySystemCalls calls;
    RFTSFSO textio{calls, flags, ansi};
    Tree tree;     // as it was before the last run
    Strings paths; // that can be listed

    std::size_t Any(std::size_t below) { return random() % below; }

    std::string Bytes() {
        const std::size_t big = Any(200);
        std::string bytes(big == 0   ? 1000000 + Any(1000000)
                          : big <= 8 ? 65534 + Any(4)
                                     : Any(3000),
                          'c');
        const bool hasFinds = Any(4) > 0;
        for (std::size_t i = Any(50); i < bytes.size(); i += 1 + Any(1 + bytes.size() / 50)) {
            bytes[i] = hasFinds ? 'a' : static_cast<char>('b' + Any(100));
        }
        return bytes;
    }

    Tree Look() const {
        Tree entries;
        for (const char* in : {"", "out/"}) {
            for (const std::string& name : folder.Names(in)) {
                struct stat status {};
                Entry entry;
                const std::string path = folder.Native(in + name);
                ::lstat(path.c_str(), &status);
                if (S_ISDIR(status.st_mode)) {
                    continue;
                }
                entry.mode = status.st_mode;
                entry.owner = status.st_uid;
                entry.group = status.st_gid;
                entry.inode = status.st_ino;
                entry.date = status.st_mtim.tv_sec * 1'000'000'000 + status.st_mtim.tv_nsec;
                if (S_ISLNK(status.st_mode)) {
                    entry.bytes = std::filesystem::read_symlink(path);
                } else {
                    entry.bytes = folder.Read(in + name);
                    std::array<char, 100> note{};
                    entry.note.assign(note.data(), static_cast<std::size_t>(std::max<ssize_t>(
                                                       0, ::lgetxattr(path.c_str(), "user.note",
                                                                      note.data(), note.size()))));
                }
                entries[in + name] = entry;
            }
        }
        return entries;
    }

    void MakeTree() {
        folder.Clear();
        state.Clear();
        folder.MakeFolder("out");
        paths.clear();
        const std::size_t count = 1 + Any(6);
        for (std::size_t i = 0; i < count; ++i) {
            std::string name = std::to_string(i);
            if (i > 0 && Any(6) == 0) {
                folder.MakeLink(name, paths[Any(paths.size())]);
            } else if (i > 0 && Any(6) == 0) {
                std::filesystem::create_hard_link(folder.Native(paths[Any(i)]),
                                                  folder.Native(name));
            } else {
                WriteOld(name, Bytes());
                SetDate(name, kOldDate + static_cast<std::int64_t>(Any(1000)) * 1'000'000'007);
                ::lsetxattr(folder.Native(name).c_str(), "user.note", name.data(), name.size(), 0);
                ::chmod(folder.Native(name).c_str(), Any(6) == 0 ? 0444 : 0640);
            }
            if (Any(4) == 0) {
                WriteOld("out/" + name, Bytes());
            }
            paths.push_back(name);
        }
    }

    /// Runs over some of the files, perhaps twice over the same.
    void Run(SystemCalls& with, RFTSFSO& reader) {
        SafeWriter writer(with, Logs());
        ReplaceText engine(reader, writer, prompts);
        const std::u16string put[] = {u"", u"b", u"aab", u"a"};
        const std::u16string& replace = put[Any(4)];
        const bool inPlace = Any(3) > 0;
        const std::size_t count = 1 + Any(2 * paths.size());
        for (std::size_t i = 0; i < count; ++i) {
            engine.ReplaceTextInFile(folder.Path(paths[Any(paths.size())]), u"a", replace,
                                     {!inPlace, inPlace, folder.Path("out")}, 1);
        }
        engine.Settle();
        writer.Settle();
    }

    /// Something that another program does to a file; its numbers before and after are touched.
    void Touch(const std::string& name, std::set<ino_t>& touched) {
        const std::string path = folder.Native(name);
        struct stat status {};
        ::stat(path.c_str(), &status);
        touched.insert(status.st_ino);
        const std::string bytes = folder.Read(name);
        ::chmod(path.c_str(), 0640);
        switch (Any(5)) {
        case 0:
            folder.Write(name, bytes + "edited");
            break;
        case 1:
            folder.Write(name, std::string(bytes.size(), 'z') + (bytes.empty() ? "z" : ""));
            break;
        case 2:
            folder.Remove(name);
            break;
        case 3:
            ::rename(path.c_str(), (path + "-renamed").c_str());
            break;
        default:
            folder.Write("new", "other");
            ::rename(folder.Native("new").c_str(), path.c_str());
            ::stat(path.c_str(), &status);
            touched.insert(status.st_ino);
        }
    }
};

TEST_F(TakingBackTest, RandomTrees) {
    const Unprivileged user; // for whom a file may be read-only
    std::size_t changed = 0, left = 0, earlier = 0, killed = 0, named = 0;
    for (unsigned seed = 0; seed < 1000 && !HasFailure(); ++seed) {
        SCOPED_TRACE("tree " + std::to_string(seed));
        random.seed(seed);
        MakeTree();
        const Tree first = Look();
        Tree before = first;
        const auto expectTree = [&](const Tree& expected) {
            const Tree now = Look();
            for (const auto& [name, entry] : expected) {
                const auto found = now.find(name);
                ASSERT_NE(found, now.end()) << name;
                EXPECT_TRUE(found->second == entry)
                    << name << ", " << entry.bytes.size() << " and " << found->second.bytes.size()
                    << " bytes, " << found->second.date - entry.date;
            }
            EXPECT_EQ(now.size(), expected.size());
        };
        prompts.boxes.clear();
        if (seed % 4 == 0) { // a run that is killed, and recovered from
            const bool finished = InChildProcess([&] {
                FaultySystemCalls faulty;
                RFTSFSO reader{faulty, flags, ansi};
                faulty.mostAtOnce = 1 + Any(100000);
                faulty.AtCall(static_cast<int>(1 + Any(200)), Event::KillHalf);
                Run(faulty, reader);
            });
            killed += finished ? 0 : 1;
            Recover(Answer::Yes);
            EXPECT_EQ(TakeBack(), Strings{});
            expectTree(first);
            EXPECT_EQ(Kept("a"), Strings{});
            continue;
        }
        const std::size_t runs = 1 + Any(3);
        for (std::size_t run = 0; run < runs; ++run) {
            const Tree now = Look();
            Run(calls, textio);
            tree = Look() == now ? tree : now; // only a run that changes something is the last one
        }
        const Tree after = Look();
        if (seed % 4 == 1) { // all runs, the last one first
            while (!Kept("a").empty() && !HasFailure()) {
                EXPECT_EQ(TakeBack(), Strings{});
                ++earlier;
            }
            expectTree(first);
            continue;
        }
        std::set<ino_t> touched;
        for (const auto& [name, entry] : after) {
            if (S_ISREG(entry.mode) && Any(4) == 0 && folder.Exists(name)) {
                Touch(name, touched);
            }
        }
        const Tree edited = Look();
        const bool hasRun = !Kept("a").empty();
        const Strings told = TakeBack();
        const Tree now = Look();
        const auto wasTouched = [&](const Entry& entry) { return touched.count(entry.inode) > 0; };
        const auto hasOneName = [&](ino_t inode) {
            const auto leadsThere = [&](const auto& other) {
                const bool isLink = S_ISLNK(other.second.mode);
                const auto end = isLink ? after.find(other.second.bytes) : after.end();
                return other.second.inode == inode ||
                       (isLink && (end == after.end() || S_ISLNK(end->second.mode) ||
                                   end->second.inode == inode));
            };
            return std::count_if(after.begin(), after.end(), leadsThere) <= 1;
        };
        for (const auto& [name, entry] : edited) {
            const auto old = tree.find(name);
            const auto found = now.find(name);
            if (wasTouched(entry)) { // another name of the file may have been taken back
                ASSERT_NE(found, now.end()) << name;
                EXPECT_TRUE(found->second == entry || !hasOneName(entry.inode)) << name;
                left += found->second == entry ? 1 : 0;
            } else if (!hasRun || (old != tree.end() && old->second.inode == entry.inode)) {
                const Entry& expected = hasRun ? old->second : entry;
                ASSERT_NE(found, now.end()) << name;
                EXPECT_TRUE(found->second == expected) << name << " is not as it was";
                changed += entry == expected ? 0 : 1;
            } else {
                EXPECT_EQ(found, now.end()) << name << " was created";
            }
        }
        Strings names;
        for (const std::string& text : told) {
            const std::string name = text.substr(0, text.find(':'));
            names.push_back(name);
            const auto was = after.find(name);
            ASSERT_NE(was, after.end());
            EXPECT_TRUE(S_ISLNK(was->second.mode) || wasTouched(was->second)) << text;
        }
        for (const auto& [name, entry] : after) { // what was to come back and did not is named
            const auto old = tree.find(name);
            if (hasRun && wasTouched(entry) && hasOneName(entry.inode) && old != tree.end() &&
                old->second.bytes != entry.bytes) {
                EXPECT_THAT(names, testing::Contains(name));
                ++named;
            }
        }
    }
    EXPECT_GT(named, 100U);
    EXPECT_GT(changed, 200U);
    EXPECT_GT(left, 200U);
    EXPECT_GT(earlier, 200U);
    EXPECT_GT(killed, 50U);
    RecordProperty("changed", std::to_string(changed));
    RecordProperty("left", std::to_string(left));
    RecordProperty("killed", std::to_string(killed));
}

} // namespace
} // namespace vexmarrow::test

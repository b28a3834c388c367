# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Measures the program beside tools that copy and edit files. bench.sh starts this script."""

import argparse
import json
import os
import re
import shutil
import statistics
import sys
import time

from corpus import (ALL, CODE_PAGE, HALF, HALF_FIELD, NONE, Corpus, cyrillic_file, cyrillic_pairs,
                    in_code_page, replaced, replaced_in_part)
from measure import (Contender, Failed, Sample, Table, Tree, check, compete, figures, median,
                     process, read, spread)
import vcard_rows

MIB = 1 << 20
COPY = ["cp", "--reflink=never"]
PLAIN = dict(os.environ, LC_ALL="C")  # makes the other tools work on bytes, which is quickest
ROWS = {}

PERL_SETS = r"""
open my $sets, "<:raw", shift or die; my @pairs = map { chomp; [split /::/, $_, 2] } <$sets>;
for my $path (@ARGV) {
    open my $in, "<:raw", $path or die; local $/; my $text = <$in>;
    for (@pairs) {
        my ($find, $replace) = @$_;
        for (my $at = 0; ($at = index $text, $find, $at) >= 0; $at += length $replace) {
            substr $text, $at, length $find, $replace;
        }
    }
    open my $out, ">:raw", $path or die; print $out $text; close $out or die;
}"""


def row(name, *arguments):
    """Makes a method of Bench a row of the benchmark, which calls it with these arguments."""
    def keep(function):
        ROWS[name] = lambda bench: function(bench, *arguments)
        return function
    return keep


FIND_SPECIAL, REPLACE_SPECIAL = r"[]*.^$\/", r"\/&"  # characters that sed does not take literally


def sed_script(pairs):
    def escape(text, special):
        return "".join("\\" + c if c in special else c for c in text)

    return "".join(f"s/{escape(find, FIND_SPECIAL)}/{escape(replace, REPLACE_SPECIAL)}/g\n"
                   for find, replace in pairs)


class Bench:
    def __init__(self, options):
        self.options = options
        self.rounds = options.rounds or (2 if options.quick else 5)
        self.programs = options.programs
        self.places = {"ext4": options.disk, "tmpfs": options.memory}
        quick = options.quick
        self.cards, self.few, self.wide = (1000, 100, 200) if quick else (10000, 1000, 2000)
        self.big, self.room = (16 * MIB, 512 * MIB) if quick else (256 * MIB, 4096 * MIB)
        self.rows = 10000 if quick else 100000
        self.corpus = Corpus(self.cards, self.wide)
        self.table = None
        self.peaks = []
        self.trees = {}
        self.env = dict(os.environ, XDG_STATE_HOME=os.path.join(options.disk, "state"))

    # Files to work on.

    def tree(self, place, name, files):
        folder = os.path.join(self.places[place], name)
        if folder not in self.trees:
            self.trees[folder] = Tree(folder, files)
        return self.trees[folder]

    def folder(self, place, name):
        path = os.path.join(self.places[place], name)
        os.makedirs(path, exist_ok=True)
        return path

    def file(self, name, text, encoding=CODE_PAGE):
        path = os.path.join(self.options.disk, name)
        with open(path, "w", encoding=encoding, newline="\n") as file:
            file.write(text)
        return path

    def sets_file(self, pairs, encoding):
        return self.file(f"sets-{len(pairs)}.{encoding}",
                         "".join(f"{find}::{replace}\n" for find, replace in pairs), encoding)

    # Contenders.

    def run(self, work, mode, tree, pairs, folder="-", page="windows-1252", besides=None):
        """Our own run over the files of a tree, measured from the click to the end. `besides` may
        be "undo", to measure undoing the run instead, or "vcards", to read the files as vCards."""
        texts = [self.sets_file(pairs, "utf-8")] if mode == "sets" else list(pairs[0])
        command = [self.programs + "/run_bench"] + ([besides] if besides else [])
        _, said = process(command + [mode, tree.list, folder] + texts,
                          env=dict(self.env, VEXMARROW_BENCH_PAGE=page))
        seconds, user, system, peak = said.split()
        self.peaks.append((int(peak), work))
        return Sample(float(seconds), float(user) + float(system))

    def expected(self, files, pairs, mode="whole"):
        """The right results for all files, or for a sample of them if there are many pairs."""
        names = list(files) if len(pairs) <= 10 else list(files)[::max(1, len(files) // 200)]
        if mode in ("fields", "values"):
            return [(n, replaced_in_part(files[n], pairs, mode == "values")) for n in names]
        return [(n, replaced(files[n], pairs)) for n in names]

    def ours(self, name, mode, tree, pairs, work=None):
        expected = self.expected(tree.files, pairs, mode)
        return Contender(name, lambda: self.run(work or name, mode, tree, pairs), tree.restore,
                         lambda: check("our run", tree.folder, expected))

    def undo(self, name, tree, pairs, work):
        """Undoing a run of ours. It has to restore contents and dates."""
        dates = []

        def run():
            dates[:] = tree.dates()
            return self.run(work, "whole", tree, pairs, besides="undo")

        def prove():
            check(name, tree.folder, tree.files.items())
            if tree.dates() != dates:
                raise Failed(f"{name} has not restored the dates of all files")

        return Contender(name, run, tree.restore, prove)

    def tool(self, name, command, tree, pairs=None, rounds=None, arguments=False):
        """A tool that works on a tree. With `arguments`, the paths are added to its command."""
        expected = self.expected(tree.files, pairs) if pairs else tree.files.items()
        command = command + (list(tree.files) if arguments else [])
        return Contender(name, lambda: process(command, tree.folder, env=PLAIN)[0], tree.restore,
                         lambda: check(name, tree.folder, expected), rounds)

    def sed(self, tree, pairs, rounds=None):
        script = self.file(f"sed-{len(pairs)}", sed_script(pairs))
        return self.tool("sed -i", ["sed", "-i", "-f", script], tree, pairs, rounds, arguments=True)

    def copy(self, tree, source):
        return self.tool("cp -r", COPY + ["-r", source.folder + "/.", "."], tree)

    def compete(self, contenders):
        return compete(contenders, self.rounds, not self.options.quick, self.clear_state)

    def clear_state(self):
        """Removes the logs of earlier runs, so that all runs find an empty folder for theirs."""
        shutil.rmtree(self.env["XDG_STATE_HOME"], ignore_errors=True)
        os.makedirs(os.path.join(self.env["XDG_STATE_HOME"], "vexmarrow"), 0o700)

    # The rows.

    @row("inplace-tmpfs", "tmpfs")
    @row("inplace", "ext4")
    def in_place(self, place):
        source, ours, sed, copy = (self.tree(place, name, self.corpus.cards)
                                   for name in ("cards", "ours", "sed", "copy"))
        work = f"{self.cards} vCards, 1 pair, in place, {place}"
        kinds = {"half hit": HALF, "all hit": ALL, "none hit": NONE}
        samples = self.compete(
            [self.ours(kind, "whole", ours, [pair], work) for kind, pair in kinds.items()] +
            [self.undo("undo", ours, [HALF], work + ", undo"),
             self.copy(copy, source), self.sed(sed, [HALF])])
        disk = place == "ext4"
        for who, other, aim in (("half hit", "cp -r", 0.12 if disk else 0.5),
                                ("half hit", "sed -i", 0.10 if disk else 0.4),
                                ("all hit", "cp -r", 0.17 if disk else None),
                                ("none hit", "cp -r", 0.09 if disk else None),
                                ("undo", "cp -r", 0.3 if disk else None)):
            self.table.compare(f"{work}, {who}", samples, who, other, aim)

    @row("sets")
    def sets(self):
        pairs = self.corpus.sets(1000)
        for place in self.places:
            tree = self.tree(place, "ours", self.corpus.cards)
            work = f"{self.cards} vCards, 1,000 sets, in place, {place}"
            samples = self.compete([self.ours("1,000 sets", "sets", tree, pairs, work),
                                    self.ours("our 1 pair", "whole", tree, [HALF])])
            self.table.compare(work, samples, "1,000 sets", "our 1 pair", 1.6)

    @row("folder")
    def into_folder(self):
        source = self.tree("ext4", "cards", self.corpus.cards)
        files = {os.path.basename(name): data for name, data in self.corpus.cards.items()}
        expected = self.expected(files, [HALF])
        ours, copy = self.tree("ext4", "flat-ours", files), self.tree("ext4", "flat-copy", files)
        command = COPY + ["-t", copy.folder] + list(source.files)
        work = f"{self.cards} vCards, 1 pair, over outputs, ext4"
        samples = self.compete([
            Contender("ours", lambda: self.run(work, "whole", source, [HALF], ours.folder),
                      ours.restore, lambda: check("our run", ours.folder, expected)),
            Contender("cp", lambda: process(command, source.folder)[0], copy.restore,
                      lambda: check("cp", copy.folder, files.items()))])
        self.table.compare(work, samples, "ours", "cp", 0.25)

        # Every run gets a new folder, because deleting so many files would slow the next runs down.
        turns = {"ours": 0, "cp": 0}

        def next_folder(who):
            turns[who] += 1
            self.folder("ext4", f"new-{who}-{turns[who]}")

        def target(who):
            return os.path.join(self.places["ext4"], f"new-{who}-{turns[who]}")

        work = f"{self.cards} vCards, 1 pair, into an empty folder, ext4"
        samples = self.compete([
            Contender("ours", lambda: self.run(work, "whole", source, [HALF], target("ours")),
                      lambda: next_folder("ours"),
                      lambda: check("our run", target("ours"), expected)),
            Contender("cp", lambda: process(COPY + ["-t", target("cp")] + list(source.files),
                                            source.folder)[0],
                      lambda: next_folder("cp"),
                      lambda: check("cp", target("cp"), files.items()))])
        self.table.compare(work, samples, "ours", "cp", 1.2)

    @row("tools")
    def sets_of_other_tools(self):
        files = dict(list(self.corpus.cards.items())[:self.few])
        pairs = self.corpus.sets(1000)
        ours, sed, perl = (self.tree("ext4", "few-" + name, files)
                           for name in ("ours", "sed", "perl"))
        work = f"{self.few} vCards, 1,000 sets, in place, ext4"
        perl_command = ["perl", "-e", PERL_SETS, self.sets_file(pairs, CODE_PAGE)]
        samples = self.compete([
            self.ours("ours", "sets", ours, pairs, work), self.sed(sed, pairs, rounds=1),
            self.tool("perl", perl_command, perl, pairs, min(3, self.rounds), arguments=True)])
        self.table.compare(work, samples, "ours", "sed -i", 1 / 300)
        self.table.compare(work, samples, "ours", "perl", 1 / 25)

    @row("sides")
    def fields_and_values(self):
        tree = self.tree("ext4", "ours", self.corpus.cards)
        samples = self.compete([
            self.ours("fields", "fields", tree, [HALF_FIELD], "fields only"),
            self.ours("values", "values", tree, [HALF], "values only"),
            self.ours("our whole text", "whole", tree, [ALL])])  # it changes all files, too
        for name in ("fields", "values"):
            self.table.compare(f"{self.cards} vCards, {name} only, in place, ext4", samples, name,
                               "our whole text", 1.3)

    @row("big-tmpfs", "tmpfs")
    @row("big", "ext4")
    def big_file(self, place):
        data = self.corpus.big_file(self.big)
        size = f"one {self.big // MIB} MB file"
        source = self.tree(place, "big", {"big.vcf": data})
        target = {who: os.path.join(self.folder(place, "big-" + who), "big.vcf")
                  for who in ("1", "10", "1000", "cp", "sed")}

        def remove(who):
            if os.path.exists(target[who]):
                os.remove(target[who])

        def prove(who, path, count):
            # Checks all bytes for a few pairs. For many pairs, checks both ends of the file.
            pairs = [HALF] if count == 1 else self.corpus.sets(count)
            result = read(path)
            if count <= 10:
                right = result == replaced(data, pairs)
            else:
                ends = [replaced(part, pairs) for part in (data[:MIB], data[-MIB:])]
                right = result.startswith(ends[0]) and result.endswith(ends[1])
            if not right:
                raise Failed(f"{who} has left wrong contents in {path}")

        def ours(count):
            who, pairs = str(count), [HALF] if count == 1 else self.corpus.sets(count)
            return Contender(
                who, lambda: self.run(f"{size}, {count} pairs, new output, {place}",
                                      "whole" if count == 1 else "sets", source, pairs,
                                      os.path.dirname(target[who])),
                lambda: remove(who), lambda: prove("our run", target[who], count))

        script = self.file("sed-1", sed_script([HALF]))
        samples = self.compete([
            ours(1), ours(10), ours(1000),
            Contender("cp", lambda: process(COPY + [source.path("big.vcf"), target["cp"]])[0],
                      lambda: remove("cp")),
            Contender("sed", lambda: process(["sed", "-f", script, source.path("big.vcf")],
                                             output=target["sed"], env=PLAIN)[0],
                      lambda: remove("sed"), lambda: prove("sed", target["sed"], 1))])
        for who, other, aim in (("1", "cp", 1.7), ("1", "sed", 0.2), ("10", "cp", 3),
                                ("1000", "cp", 5)):
            self.table.compare(f"{size}, {who} pairs, new output, {place}",
                               samples, who, other, aim)
        for who in target:
            remove(who)

        work = f"{size}, 1 pair, in place, {place}"
        ours_tree, copy = (self.tree(place, f"big-{who}-in-place", source.files)
                           for who in ("ours", "copy"))
        samples = self.compete([
            self.ours("ours", "whole", ours_tree, [HALF], work),
            self.undo("undo", ours_tree, [HALF], work + ", undo"),
            self.tool("cp", COPY + [source.path("big.vcf"), "big.vcf"], copy)])
        self.table.compare(work, samples, "ours", "cp", 4)
        self.table.compare(work + ", undo", samples, "undo", "cp", 2)
        for tree in (source, ours_tree, copy):
            os.remove(tree.path("big.vcf"))
            del self.trees[tree.folder]

    @row("utf16")
    def utf16(self):
        source, ours, copy = (self.tree("ext4", "utf16-" + name, self.corpus.utf16)
                              for name in ("source", "ours", "copy"))

        def work(count):
            return f"{self.wide} UTF-16 files, {count} sets, in place, ext4"

        samples = self.compete([
            self.ours("1", "sets", ours, [HALF], work("1")),
            self.ours("1,000", "sets", ours, self.corpus.sets(1000), work("1,000")),
            self.copy(copy, source)])
        self.table.compare(work("1"), samples, "1", "cp -r", 0.5)
        self.table.compare(work("1,000"), samples, "1,000", "cp -r", 0.8)

    def in_encoding(self, work, files, page, encoding, pairs):
        """A run over files of the code page `page` after they are converted to `encoding`, which is
        also the code page of the run."""
        files = {name: data.decode(page).encode(encoding) for name, data in files.items()}
        tree = self.tree("tmpfs", f"{encoding}-{'-'.join(work.split()[:3])}", files)
        many = len(pairs) > 10 and sum(map(len, files.values())) > 8 * MIB
        proven = [] if many and len(files) == 1 else list(files)[::max(1, len(files) // 200)]
        expected = [(name, replaced(files[name], pairs, encoding)) for name in proven]
        mode = "whole" if len(pairs) == 1 else "sets"
        return Contender(encoding, lambda: self.run(work, mode, tree, pairs, page=encoding),
                         tree.restore, lambda: check("our run", tree.folder, expected))

    @row("utf8")
    def utf8(self):
        size = self.big // 4
        mib = size // MIB

        def western(count):
            return [HALF] if count == 1 else self.corpus.sets(count)

        big, cyrillic = {"big.vcf": self.corpus.big_file(size)}, {"big.vcf": cyrillic_file(size)}
        for what, files, page, pairs_of, aim in (
                (f"{self.cards} vCards", self.corpus.cards, CODE_PAGE, western, 1.2),
                (f"{mib} MB file", big, CODE_PAGE, western, 1.2),
                # Cyrillic text has twice as many bytes in UTF-8.
                (f"{mib} MB Cyrillic", cyrillic, "cp1251", cyrillic_pairs, 2.4)):
            for count in (1, 1000):
                work = f"{what} in UTF-8, {count} pairs, in place, tmpfs"
                samples = self.compete([
                    self.in_encoding(work, files, page, encoding, pairs_of(count))
                    for encoding in (page, "utf-8")])
                self.table.compare(work, samples, "utf-8", page, aim)

    @row("cascade")
    def cascade(self):
        program = self.programs + "/cascade_bench"
        if not os.path.exists(program):
            print("cascade: left out, there is no cascade_bench in this build")
            return
        aims = {1: 0.6, 10: 0.2, 100: 0.15, 1000: 0.11}
        shares = {count: [] for count in aims}
        for _ in range(self.rounds):
            _, said = process([program, "--benchmark_filter=^(memcpy|bytes/[0-9]+Pairs/65536)$",
                               "--benchmark_format=json"])
            for result in json.loads(said)["benchmarks"]:
                found = re.match(r"bytes/(\d+)Pairs", result["name"])
                if found:
                    shares[int(found[1])].append(result["ofMemcpy"])
        for count, aim in aims.items():
            self.table.line(f"cascade alone, {count} pairs: share of memcpy", spread(shares[count]),
                            "1", statistics.median(shares[count]), aim, at_least=True)

    @row("list")
    def file_list(self):
        sizes = (self.rows // 10, self.rows)
        # A tenth of the rows has each of these paths, and the others are to be kept.
        kinds = {7: "keep/odd-{}.txt", 8: "other/{}.vcf", 9: "keep/remove/{}.vcf"}
        left = {"load": 10, "validate": 9, "keep": 8, "remove": 7, "clear": 0}  # tenths
        paths = {size: self.file(f"rows-{size}", "".join(
            f"/home/ann/addresses/{kinds.get(i % 10, 'keep/{}.vcf').format(i)}\r\n"
            for i in range(size))) for size in sizes}
        samples = {}
        for _ in range(self.rounds):
            for size in sizes:
                _, said = process([self.programs + "/run_bench", "list", paths[size], "/keep/",
                                   "/remove/"], env=self.env)
                for line in said.splitlines():
                    what, seconds, rows = line.split()
                    if int(rows) != size // 10 * left[what]:
                        raise Failed(f"{rows} rows are left of {size} after {what}")
                    samples.setdefault((what, size), []).append(Sample(float(seconds)))
        for what in left:
            long, short = samples[what, sizes[1]], samples[what, sizes[0]]
            work = f"list of {sizes[1]} rows: {what}"
            self.table.line(work, figures(long), f"{sizes[0]} rows {figures(short)}",
                            median(long) / median(short), 12)
            self.table.line(work, figures(long), "1 s", median(long), 1)

    @row("drop")
    def drop(self):
        def filled(how, folders, rows):
            sample, said = process([self.programs + "/run_bench", how] + folders, env=self.env)
            seconds, listed = said.split()
            if int(listed) != rows:
                raise Failed(f"{how} has made {listed} rows instead of {rows}")
            return Sample(float(seconds), sample.cpu)

        count, few = self.rows // 10, self.rows // 500
        tree = self.tree("ext4", "dropped",
                         {f"{i % 100}/{i}/a.vcf": b"" for i in range(count)}).folder
        ten = [self.tree("ext4", f"dropped-{i}", {f"{j}/a.vcf": b"" for j in range(few)}).folder
               for i in range(10)]
        # With each folder of a drop, all folders and files before it are listed once more.
        rows = few * sum(i * (i + 1) // 2 for i in range(1, 11))
        samples = self.compete([Contender("button", lambda: filled("add", [tree], count)),
                                Contender("tree", lambda: filled("drop", [tree], count)),
                                Contender("ten", lambda: filled("drop", ten, rows))])
        self.table.compare(f"{count} folders with a file, dropped", samples, "tree", "button", 1.5)
        self.table.compare(f"10 with {few} folders each: {rows} rows", samples, "ten", "button",
                           1.5 * rows / count)

    @row("start")
    def start(self):
        def started(*command):
            begun = time.monotonic()  # all processes share this clock
            sample, said = process(list(command), env=self.env)
            return Sample(float(said) - begun, sample.cpu)

        samples = compete([
            Contender("ours", lambda: started(self.programs + "/run_bench", "start")),
            Contender("empty window", lambda: started(self.programs + "/empty_window"))],
            max(self.rounds, 10), warm_up=True)
        self.table.compare("start to a usable window", samples, "ours", "empty window", 3)

    @row("calls")
    def system_calls(self):
        """Counts calls over many and over few files. The difference is what each file needs."""
        many, few = self.few, self.few // 10
        log = os.path.join(self.options.disk, "calls")

        def count(files, make_command, who):
            tree = self.tree("ext4", f"calls-{who}-{len(files)}", files)
            self.clear_state()
            tree.restore()
            command, cwd = make_command(tree)
            process(["strace", "-f", "-c", "-U", "calls,name", "-o", log] + command, cwd, env=dict(
                self.env, LC_ALL="C.UTF-8" if who == "ours" else "C"))
            lines = (line.split() for line in read(log).decode().splitlines())
            return {cells[1]: int(cells[0]) for cells in lines
                    if len(cells) == 2 and cells[0].isdigit() and cells[1] != "total"}

        def copy(tree):
            source = self.tree("ext4", f"calls-source-{len(tree.files)}", tree.files)
            return COPY + ["-r", source.folder + "/.", "."], tree.folder

        def run_of(pair, undo=False):
            command = [self.programs + "/run_bench"] + (["undo"] if undo else []) + ["whole"]
            return lambda tree: (command + [tree.list, "-", *pair], None)

        script = self.file("sed-1", sed_script([HALF]))
        commands = {
            "ours, half hit": run_of(HALF), "ours, all hit": run_of(ALL),
            "ours, none hit": run_of(NONE), "ours, run and undo": run_of(ALL, undo=True),
            "cp -r": copy,
            "sed -i": lambda tree: (["sed", "-i", "-f", script] + list(tree.files), tree.folder),
            "perl -pi": lambda tree: (["perl", "-pi", "-e", f"s/\\Q{HALF[0]}\\E/{HALF[1]}/g"] +
                                      list(tree.files), tree.folder),
        }
        all_files = list(self.corpus.cards.items())
        print("System calls per file, in place, 1 pair:")
        counted = {}
        for who, make_command in commands.items():
            more, less = (count(dict(all_files[:size]), make_command, who.split()[0].strip(","))
                          for size in (many, few))
            each = {name: (more[name] - less.get(name, 0)) / (many - few) for name in more}
            if "undo" in who:
                who = "ours, undo"
                run = counted["ours, all hit"]
                each = {name: calls - run.get(name, 0) for name, calls in each.items()}
            counted[who] = each
            each = {name: calls for name, calls in each.items() if calls >= 0.05}
            names = sorted(each, key=each.get, reverse=True)
            print(f"  {who:<15} {sum(each.values()):5.1f} = " +
                  ", ".join(f"{name} {each[name]:.1f}" for name in names))

    @row("memory")
    def memory_of_whole_texts(self):
        """The peak of memory as a multiple of the size, for files of one text or one line."""
        size = self.big // 4
        text = self.corpus.big_file(size)
        marked = b"\xef\xbb\xbf" + text.decode(CODE_PAGE).encode("utf-8")
        ends = b"\r\n" * (size // 2)
        number = HALF[0].encode(CODE_PAGE) + b", "
        line = b"NOTE:" + number * (size // len(number)) + b"\r\n"
        for what, data, mode, pair, result, aim in (
                ("UTF-8 with mark", marked, "fields", HALF_FIELD,
                 replaced_in_part(text + b"\r\n", [HALF_FIELD], 0), 1),
                ("UTF-8 with mark", marked, "sets", HALF, replaced(text, [HALF]), 2.5),
                ("CR LF after a mark", b"\xef\xbb\xbf" + ends, "values", HALF, ends + b"\r\n", 1),
                ("one line", line, "values", HALF, replaced_in_part(line, [HALF], 1), 3)):
            tree = self.tree("tmpfs", "memory", {"big.vcf": b""})
            tree.files = {"big.vcf": data}
            tree.restore()
            sample = self.run(what, mode, tree, [pair])
            check("our run", tree.folder, [("big.vcf", result)])
            peak, _ = self.peaks.pop()  # not counted in memory(), because these need the whole file
            self.table.line(f"peak memory, {size // MIB} MB, {what}, {mode}", figures([sample]),
                            "the size of the file", peak / len(data), aim)

        # A large file is replaced in place, with its old text in the log, and then restored.
        data = self.corpus.big_file(self.big)
        tree = self.tree("ext4", "memory-big", {"big.vcf": data})
        result = replaced(data, [HALF])
        for undo in (False, True):
            self.clear_state()
            tree.restore()
            what = f"{self.big // MIB} MB in place{', undo' if undo else ''}"
            sample = self.run(what, "whole", tree, [HALF], besides="undo" if undo else None)
            check("our run", tree.folder, [("big.vcf", data if undo else result)])
            peak, _ = self.peaks.pop()
            self.table.line("peak memory in MiB, " + what, figures([sample]), f"{peak / MIB:.1f}",
                            peak / MIB, 64)
        os.remove(tree.path("big.vcf"))
        del self.trees[tree.folder]

    def memory(self):
        if self.peaks:
            peak, work = max(self.peaks)
            self.table.line("peak memory in MiB, largest of all runs", f"{peak / MIB:.1f}", work,
                            peak / MIB, 64)


row("vcards")(vcard_rows.compare_with_plain_text)


def file_system(folder):
    return process(["df", "--output=fstype", folder])[1].split()[-1]


def introduce(bench):
    """Prints what a reader of the figures needs to know about this machine and its files."""
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        models = re.findall(r"model name\s*: (.*)", file.read()) or ["unknown processor"]
    print(f"{models[0]}, {os.cpu_count()} cores, Linux {os.uname().release}, "
          f"load {os.getloadavg()[0]:.1f}; rounds: {bench.rounds}")
    for name, folder in bench.places.items():
        if file_system(folder) != name:
            print(f"The folder for {name} is on {file_system(folder)}. VEXMARROW_BENCH_DISK and "
                  "VEXMARROW_BENCH_MEMORY choose other folders.")
        if shutil.disk_usage(folder).free < bench.room:
            raise Failed(f"the files need {bench.room // MIB} MB, and {folder} has less free")
    sample = list(bench.corpus.cards.values())[:500]
    sets = in_code_page(bench.corpus.sets(1000))
    half = sum(HALF[0].encode(CODE_PAGE) in data for data in bench.corpus.cards.values())
    hits = sum(data.count(find) for data in sample for find, _ in sets) / len(sample)
    print(f"{bench.cards} vCards of {sum(map(len, sample)) // len(sample)} bytes on average; "
          f"1 pair hits {half} of them, 1,000 sets make {hits:.1f} replacements in each")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("rows", nargs="*", metavar="ROW", help="any of: " + " ".join(ROWS))
    parser.add_argument("--rounds", type=int, help="number of rounds (default: 5)")
    parser.add_argument("--quick", action="store_true",
                        help="few files and rounds, only to see that everything works")
    parser.add_argument("--programs", required=True, help=argparse.SUPPRESS)
    parser.add_argument("--disk", required=True, help=argparse.SUPPRESS)
    parser.add_argument("--memory", required=True, help=argparse.SUPPRESS)
    options = parser.parse_args()
    unknown = [name for name in options.rows if name not in ROWS]
    if unknown:
        parser.error(f"no such row: {' '.join(unknown)}; there are: {' '.join(ROWS)}")
    try:
        bench = Bench(options)
        introduce(bench)
        bench.table = Table()
        for name in options.rows or ROWS:
            ROWS[name](bench)
        bench.memory()
    except Failed as failure:
        sys.exit(f"bench: {failure}")
    print(f"{bench.table.met} of the aims are met, {bench.table.missed} are not.")


if __name__ == "__main__":
    main()

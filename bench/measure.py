# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Trees of files that are restored before each run, timed processes, and the table of results."""

import os
import statistics
import subprocess
import sys
import time

WIDTHS = (51, 34, 44, 6, 9, 3)


class Failed(Exception):
    pass


class Sample:
    """One run: its seconds, and its CPU seconds if they are known."""

    def __init__(self, seconds, cpu=None):
        self.seconds, self.cpu = seconds, cpu


def process(command, cwd=None, output=None, env=None):
    """Runs a command. Returns its Sample and its standard output, unless that goes to a file."""
    out = open(output, "wb") if output else subprocess.PIPE
    begun = time.monotonic()
    child = subprocess.Popen(command, cwd=cwd, stdin=subprocess.DEVNULL, stdout=out, env=env)
    said = "" if output else child.stdout.read().decode()
    _, status, usage = os.wait4(child.pid, 0)
    seconds = time.monotonic() - begun
    child.returncode = os.waitstatus_to_exitcode(status)
    if output:
        out.close()
    else:
        child.stdout.close()
    if child.returncode != 0:
        raise Failed(f"{' '.join(command)[:200]} ended with {child.returncode}")
    return Sample(seconds, usage.ru_utime + usage.ru_stime), said


def read(path):
    with open(path, "rb") as file:
        return file.read()


class Tree:
    """A folder of files with known contents."""

    def __init__(self, folder, files):
        self.folder, self.files = folder, files
        for name in files:
            os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        self.restore()
        self.list = folder + ".list"
        with open(self.list, "wb") as file:
            file.write(b"\xef\xbb\xbf")  # the mark of UTF-8, because paths may hold any character
            file.writelines(os.fsencode(self.path(name)) + b"\r\n" for name in files)

    def path(self, name):
        return os.path.join(self.folder, name)

    def dates(self):
        """The time of each file's last change, in nanoseconds."""
        return [os.stat(self.path(name)).st_mtime_ns for name in self.files]

    def restore(self):
        """Overwrites the files with their contents. No file is deleted and created again."""
        for name, data in self.files.items():
            write(self.path(name), data)


def write(path, data):
    number = os.open(path, os.O_WRONLY | os.O_CREAT, 0o644)
    view = memoryview(data)
    at = 0
    while at < len(data):
        at += os.pwrite(number, view[at:at + (16 << 20)], at)
    os.ftruncate(number, len(data))
    os.close(number)


def check(what, folder, expected):
    """Raises Failed unless the files of a folder have the `expected` names and contents."""
    for name, data in expected:
        path = os.path.join(folder, name)
        if read(path) != data:
            raise Failed(f"{what} has left wrong contents in {path}")


class Contender:
    """A program that takes part in a comparison. `prepare` restores the files, `run` does the work
    and returns a Sample, and `check` raises Failed if the results are wrong. A slow contender has
    `rounds` of its own."""

    def __init__(self, name, run, prepare=lambda: None, check=lambda: None, rounds=None):
        self.name, self.rounds = name, rounds
        self.run, self.prepare, self.check = run, prepare, check


def compete(contenders, rounds, warm_up, before=lambda: None):
    """Runs the contenders in turn, with a call of `before` before each run. Returns the Samples of
    each contender by its name."""
    samples = {contender.name: [] for contender in contenders}
    for number in range(-1 if warm_up else 0, rounds):
        for contender in contenders:
            limit = contender.rounds or rounds
            if number >= limit or (number < 0 and contender.rounds):
                continue
            before()
            contender.prepare()
            os.sync()
            sample = contender.run()
            contender.check()
            if number >= 0:
                samples[contender.name].append(sample)
    return samples


def median(samples):
    return statistics.median(sample.seconds for sample in samples)


def spread(values):
    return f"{number(statistics.median(values))} ({number(min(values))}-{number(max(values))})"


def figures(samples):
    """The median, the spread and the CPU time of some runs."""
    shown = spread([sample.seconds for sample in samples])
    times = [sample.cpu for sample in samples if sample.cpu is not None]
    return shown + f" cpu {number(statistics.median(times))}" if times else shown


def number(value):
    """A number with two or three significant digits."""
    limits = {0.01: 4, 0.1: 3, 10: 2, 100: 1}
    digits = next((digits for limit, digits in limits.items() if value < limit), 0)
    return f"{value:.{digits}f}"


class Table:
    """The table of results, whose lines are shown as soon as they are known."""

    def __init__(self):
        self.met = self.missed = 0
        self._line("work", "ours, s", "beside, s", "ratio", "aim", "met")
        self._line(*("-" * width for width in WIDTHS))

    def line(self, work, ours, beside, ratio, aim, at_least=False):
        if aim is None:  # measured only
            self._line(work, ours, beside, number(ratio), "", "")
            return
        met = ratio >= aim if at_least else ratio <= aim
        self.met += met
        self.missed += not met
        self._line(work, ours, beside, number(ratio), (">= " if at_least else "<= ") + number(aim),
                   "yes" if met else "NO")

    def compare(self, work, samples, ours, other, aim):
        mine, others = samples[ours], samples[other]
        rounds = "" if len(others) == len(mine) else f", rounds: {len(others)}"
        self.line(work, figures(mine), f"{other} {figures(others)}{rounds}",
                  median(mine) / median(others), aim)

    def _line(self, *cells):
        print(f"| {' | '.join(cell.ljust(width) for cell, width in zip(cells, WIDTHS))} |")
        sys.stdout.flush()

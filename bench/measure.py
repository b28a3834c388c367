# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Trees of files that are put back before each run, timed processes, and the table."""

import os
import statistics
import subprocess
import sys
import time

WIDTHS = (51, 34, 44, 6, 9, 3)


class Failed(Exception):
    pass


class Sample:
    """One run: seconds, and seconds of the processor where they are known."""

    def __init__(self, seconds, cpu=None):
        self.seconds, self.cpu = seconds, cpu


def process(command, cwd=None, output=None, env=None):
    """Runs a command to its end; its Sample, and what it has said unless that goes to a file."""
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
        raise Failed("%s ended with %d" % (" ".join(command)[:200], child.returncode))
    return Sample(seconds, usage.ru_utime + usage.ru_stime), said


def read(path):
    with open(path, "rb") as file:
        return file.read()


class Tree:
    """A folder with files of known contents."""

    def __init__(self, folder, files):
        self.folder, self.files = folder, files
        for name in files:
            os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        self.restore()
        self.list = folder + ".list"
        with open(self.list, "wb") as file:  # with a mark: paths may hold any character
            file.write(b"\xef\xbb\xbf" + b"".join(os.fsencode(self.path(name)) + b"\r\n" for name in files))

    def path(self, name):
        return os.path.join(self.folder, name)

    def dates(self):
        """When each file was changed last, in nanoseconds."""
        return [os.stat(self.path(name)).st_mtime_ns for name in self.files]

    def restore(self):
        """Writes the contents over what the files hold; none is deleted or made anew."""
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
    """The files of a folder hold what they have to; `expected` gives names and contents."""
    for name, data in expected:
        path = os.path.join(folder, name)
        if read(path) != data:
            raise Failed("%s has left wrong contents in %s" % (what, path))


class Contender:
    """Somebody who does a work: `prepare` makes it ready again, `run` does it and returns a
    Sample, `check` raises Failed when it was not done right. The slow ones run in less rounds."""

    def __init__(self, name, run, prepare=lambda: None, check=lambda: None, rounds=None):
        self.name, self.run, self.prepare, self.check, self.rounds = name, run, prepare, check, rounds


def compete(contenders, rounds, warm_up, before=lambda: None):
    """Lets the contenders work in turn, after a call of `before` each; returns the Samples of each, by
    name."""
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
    return "%s (%s-%s)" % tuple(map(number, (statistics.median(values), min(values), max(values))))


def figures(samples):
    """Median, spread and processor time of some runs."""
    shown = spread([sample.seconds for sample in samples])
    times = [sample.cpu for sample in samples if sample.cpu is not None]
    return shown + " cpu %s" % number(statistics.median(times)) if times else shown


def number(value):
    """With two or three figures."""
    return "%.*f" % (4 if value < 0.01 else 3 if value < 0.1 else 2 if value < 10 else 1 if value < 100 else 0, value)


class Table:
    """Lines of what was measured, shown as soon as they are known."""

    def __init__(self):
        self.met = self.missed = 0
        self._line("work", "ours, s", "beside, s", "ratio", "aim", "met")
        self._line(*("-" * width for width in WIDTHS))

    def line(self, work, ours, beside, ratio, aim, at_least=False):
        if aim is None:  # told only
            self._line(work, ours, beside, number(ratio), "", "")
            return
        met = ratio >= aim if at_least else ratio <= aim
        self.met += met
        self.missed += not met
        self._line(work, ours, beside, number(ratio), (">= " if at_least else "<= ") + number(aim),
                   "yes" if met else "NO")

    def compare(self, work, samples, ours, other, aim):
        others = samples[other]
        self.line(work, figures(samples[ours]), "%s %s%s" % (
            other, figures(others), "" if len(others) == len(samples[ours]) else ", rounds: %d" % len(others)),
            median(samples[ours]) / median(others), aim)

    def _line(self, *cells):
        print("| %s |" % " | ".join(cell.ljust(width) for cell, width in zip(cells, WIDTHS)))
        sys.stdout.flush()

# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""A run in a window on a Wayland compositor, without an X server.

    on-virtual-display.sh --wayland /usr/bin/python3 wayland_job.py PROGRAM [unittest arguments]

window_test.py says more.
"""

import os
import re
import shutil

import window_test
from bus import wait_until
from driver import FIND, REPLACE, TO_FOLDER, WINDOW, tool
from oracle import WHOLE, Oracle, faults
from window_test import WindowTest, samples


class WaylandTest(WindowTest):
    def test_a_run(self):
        self.assertNotIn("DISPLAY", os.environ)
        cards, results = self.folder("cards"), self.folder("out")
        paths = [shutil.copy(sample, cards) for sample in samples()]
        with self.program(to_be_closed=False) as program:
            shown = re.compile(rf"xdg_toplevel, PID {program.process.pid}, .*'{WINDOW}'")
            wait_until(lambda: shown.search(tool("weston-debug", "scene-graph")), "the compositor to show it")
            program.type(FIND, "e\n\u00e9")
            program.type(REPLACE, "\u00e9\ni")
            program.type(TO_FOLDER, results)
            program.choose(WHOLE)
            program.add_folder(cards, len(paths))
            order = program.rows()
            self.assertEqual(sorted(order), sorted(paths))
            program.replace_all()
            self.assertEqual(faults(Oracle().run(order, results, WHOLE, "e\n\u00e9", "\u00e9\ni")), [])
        self.assertEqual(sorted(os.listdir(results)), sorted(os.listdir(cards)))


if __name__ == "__main__":
    window_test.main()

# SPDX-FileCopyrightText: 2026 The Vexmarrow authors
# SPDX-License-Identifier: MIT
"""Does a small job in the real window and takes a picture after each of its three steps.

    on-virtual-display.sh /usr/bin/python3 take.py PROGRAM FOLDER light|dark

The sample files are copied to a folder whose name suits the pictures.
"""

import os
import shutil
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tests", "e2e"))

import bus  # noqa: E402 (in the folder that was just added)
import driver  # noqa: E402

DARK = "/usr/share/qt6ct/colors/darker.conf"


def darken():
    """Makes the toolkit use the dark colours of a desktop."""
    folder = os.path.join(os.environ["XDG_CONFIG_HOME"], "qt6ct")
    os.makedirs(folder)
    with open(os.path.join(folder, "qt6ct.conf"), "w", encoding="utf-8") as file:
        file.write(f"[Appearance]\ncolor_scheme_path={DARK}\ncustom_palette=true\nstyle=Fusion\n"
                   "[Fonts]\ngeneral=\"Arial,9,-1,5,50,0,0,0,0,0\"\n")
    os.environ["QT_QPA_PLATFORMTHEME"] = "qt6ct"


def take(program, path):
    """Takes a picture of the main window without its frame, after a second without changes."""
    area = program.window.queryComponent().getExtents(bus.pyatspi.DESKTOP_COORDS)
    driver.tool("scrot", "--overwrite", "--delay", "1", "--autoselect",
                f"{area.x},{area.y},{area.width},{area.height}", path)


def main(executable, folder, look):
    if look == "dark":
        darken()
    home = "/tmp/ann"  # the pictures show this path
    os.mkdir(home)
    try:
        place = os.path.join(home, "Contacts")
        shutil.copytree(os.path.join(os.path.dirname(executable), "Samples"), place)
        results = os.path.join(home, "Changed")
        os.mkdir(results)
        program = driver.Program(executable)
        try:
            program.add_files([os.path.join(place, name) for name in sorted(os.listdir(place))])
            program.choose(driver.TO_FOLDER)
            program.type(driver.TO_FOLDER, f"{results}/")
            take(program, os.path.join(folder, f"1-files-{look}.png"))
            program.tab(driver.SINGLE)
            program.type(driver.FIND, "Brightwater Ferries\nbrightwater.example")
            program.type(driver.REPLACE, "Clearbrook Lines\nclearbrook.example")
            take(program, os.path.join(folder, f"2-texts-{look}.png"))
            program.press("Start Replacing")
            program.box()
            take(program, os.path.join(folder, f"3-done-{look}.png"))
            program.confirm("Done.")
            program.close()
        finally:
            program.kill()
    finally:
        shutil.rmtree(home)


if __name__ == "__main__":
    main(*map(os.path.abspath, sys.argv[1:3]), sys.argv[3])

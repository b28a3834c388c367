// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

#include "filelist/FileAdding.h"
#include "filelist/FileList.h"
#include "fuzz/MemoryFile.h"
#include "support/Doubles.h"

// Loading list files: every line that is not blank becomes a row, unchanged.

void vexmarrow::fuzz::TryInput(Input input) {
    const bool several = input.Byte() % 2 != 0; // then the dialog returns their folder first
    const std::size_t files = several ? 2 : 1;
    Reader reader(input);
    reader.file.bytes = input.Rest();
    const auto lines = reader.TryLines();
    FileList list;
    test::ScriptedDesktop desktop;
    FileAdding adding(list, desktop.desktop, reader.textio);
    list.Add({u"kept"});
    desktop.pickers.files = {several ? Texts{u"/memory//", u"file", u"file"} : Texts{kPath}};
    adding.LoadListFiles();

    Texts expected{u"kept"};
    for (std::size_t i = 0; lines && i < files; ++i) {
        for (const std::u16string& line : *lines) {
            if (line != std::u16string(line.size(), u' ')) {
                expected.push_back(line);
            }
        }
    }
    Texts rows;
    for (std::size_t i = 1; i <= list.Count(); ++i) {
        rows.push_back(list.Row(i));
    }
    Require(rows == expected, "the lines that are not blank are the rows, after those there were");
    Require(desktop.prompts.boxes.size() == (lines ? 0 : files),
            "failed reads are reported, nothing else");
    Require(desktop.loop.told.size() == (lines ? files * lines->size() : 0), "each line yields");
    Require(desktop.pointer.Pointer() == MousePointer::Default, "the pointer is put back");
}

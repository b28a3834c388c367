// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// The controls of the main window: their names, texts and operations. A new button needs a row here
// and an operation. A new find option also needs a row in Choices.h and a mode.

#include "app/ControlBehaviour.h"
#include "app/FileListPanel.h"
#include "app/FileListView.h"
#include "app/FindPanel.h"
#include "app/Form1.h"
#include "app/SavePanel.h"
#include "app/ToolTips.h"
#include "shell/Trap.h"

#include <QComboBox>
#include <QLabel>
#include <QRadioButton>

#include <array>

namespace vexmarrow {

struct Form1::Table {
    using enum ControlGroup;

    static constexpr auto kRows = std::to_array<Control<Form1>>({
        // The files
        {{u"ListView1", None,
          u"Drag and drop files here. Dou&ble-click item to remove it. Move | line to right and "
          u"out of window to reveal full names.",
          u"", u"File(s)"}},
        {{u"PushButton13", AddFiles, u"&Add VCF File(s)",
          u"Choose contact files and add them to the list."},
         [](Form1& form) { form.fileAdding_.AddFiles(); }},
        {{u"PushButton3", AddFiles, u"Add All VCF File(s) &In Folder",
          u"Add the .vcf files of a folder and of all folders below it, except hidden files, files "
          u"whose names begin with ~, and folders with unusual characters in their names."},
         [](Form1& form) { form.fileAdding_.AddAllFilesInFolder(); }},
        {{u"PushButton9", AddFiles, u"Load List &Of Files From File",
          u"Choose text files that contain one path per line, and add all of these paths to the "
          u"list."},
         [](Form1& form) { form.fileAdding_.LoadListFiles(); }},
        {{u"PushButton17", RemoveFiles, u"Remove Filenames Contain. &X",
          u"Remove every file whose path contains a certain text from the list; nothing is deleted "
          u"from the disk."},
         [](Form1& form) { form.fileRemoval_.RemoveFilenamesContaining(); }},
        {{u"PushButton11", RemoveFiles, u"Remove Filenames &Not Cont. X",
          u"Keep only the files whose paths contain a certain text in the list; nothing is deleted "
          u"from the disk."},
         [](Form1& form) { form.fileRemoval_.RemoveFilenamesNotContaining(); }},
        {{u"PushButton2", RemoveFiles, u"Clear Lis&t",
          u"Remove all files from the list; nothing is deleted from the disk."},
         [](Form1& form) { form.fileRemoval_.ClearList(); }},
        {{u"PushButton8", Samples, u"Load Sample/&Example Files",
          u"Add some example cards to the list and fill in a pair of texts, so that you can try a "
          u"run."},
         [](Form1& form) { form.PushButton8_Click(); }},
        {{u"PushButton5", Help, u"&Help",
          u"Show which files this program is not meant for and how to contact us."},
         [](Form1& form) { form.PushButton5_Click(); }},

        // What to find
        {{u"TabControl1", None, u"", u"", u"Find and replace"}},
        {{u"SinglePair", Tabs, u"Sin&gle find and replace",
          u"Replace one text, or one text per line."}},
        {{u"Sets", Tabs, u"M&ultiple find and replace (sets)",
          u"Replace a list of texts, one after the other."}},
        {{u"Text1", None, u" Find &what (exact case):",
          u"The text to find, with exact upper and lower case; each line is a separate text if "
          u"fields and values are searched or files are read as vCards."}},
        {{u"Text2", None, u" &Replace with:",
          u"The replacement; if each line of \"Find what\" is a separate text, it is replaced by "
          u"the same line here. If this box is empty, every text that is found is deleted."}},
        {{u"Combo1", None, u" Find &what (exact case):",
          u"The texts to find, in the order of the sets; choosing one selects its set."}},
        {{u"Combo2", None, u" &Replace with:",
          u"The replacements, in the order of the sets; choosing one selects its set."}},
        {{u"SetsTable", None, u"",
          u"All sets, in the order in which they are applied; select one to remove it with "
          u"\"Remove Selected Set\".",
          u"Sets"}},
        {{u"PushButton7", Sets, u"A&dd Set", u"Add a set: a text to find and its replacement."},
         [](Form1& form) { form.setOperations_.AddSet(); }},
        {{u"PushButton6", Sets, u"Re&move Selected Set", u"Remove the selected set."},
         [](Form1& form) {
             form.setOperations_.RemoveSelectedSet(form.find_->Combo1->currentIndex(),
                                                   form.find_->Combo2->currentIndex());
         }},
        {{u"PushButton10", Sets, u"&Load Sets",
          u"Add the sets of a text file that has one set per line."},
         [](Form1& form) { form.PushButton10_Click(); }},
        {{u"PushButton4", Sets, u"&Clear", u"Remove all sets."},
         [](Form1& form) { form.setOperations_.ClearSets(); }},
        {{u"PushButton12", Sets, u"Sa&ve Sets", u"Save all sets to a text file, one set per line."},
         [](Form1& form) { form.setOperations_.SaveSets(); }},
        {{u"Frame1", None, u"&Find Options"}},
        {{u"Option1", FindOptions, u"Find and replace in fields only",
          u"Search only the part of each line before its first colon; the second colon and the "
          u"text after it are dropped unless files are read as vCards."}},
        {{u"Option2", FindOptions, u"Find and replace in values only",
          u"Search only the part of each line after its first colon; the second colon and the text "
          u"after it are dropped unless files are read as vCards."}},
        {{u"Option3", FindOptions, u"Find and replace in fields and values",
          u"Search the whole text of each file."}},
        // Other controls have all letters of this caption and of "Undo Last Run".
        {{u"ReadAsVCards", None,
          u"Read as vCards (finds text in wrapped or coded lines, leaves photos alone) (&Y)",
          u"Find text in wrapped and coded lines of contact cards, too, and leave photos, sounds, "
          u"keys and everything that is not replaced exactly as they are."}},

        // Where results go
        {{u"Frame2", None, u"Save O&ption"}},
        {{u"Option5", None, u"Save results in folder of original file",
          u"Overwrite each file with its result."}},
        {{u"Option4", None, u"Save results to this folder:",
          u"Save all results in one folder under the names of the original files; originals in "
          u"other folders stay unchanged."}},
        {{u"Text3", None, u"", u"The folder for the results; it must already exist.",
          u"Save results to this folder:"}},
        {{u"PushButton14", None, u"...", u"Choose the folder for the results.",
          u"Browse for output folder"},
         [](Form1& form) { form.PushButton14_Click(); }},
        {{u"PushButton1", None, u"&Start Replacing",
          u"Find and replace in all listed files, from the first to the last."},
         [](Form1& form) { form.PushButton1_Click(); }},

        // The status line
        {{u"UseUtf8", None, u"Use UTF-&8"}, [](Form1& form) { form.UseUtf8_Click(); }},
        {{u"UndoLastRun", None, u"Undo Last Run (&Z)"},
         [](Form1& form) { form.CallUndo(&UndoOperations::Start); }},
        {{u"UndoMenu", None, u"",
          u"More ways to deal with the old texts that are kept for undoing runs.", u"Undo Menu"}},
        {{u"CodePage", None, u"Code page of unmar&ked files:",
          u"Encoding of text files without a byte-order mark; applies from the next file read."}},
    });
    static_assert(AllDiffer(ControlTable<Form1>(kRows)), "two controls share a name or a letter");
};

ControlTable<Form1> Form1::Controls() {
    return Table::kRows;
}

void Form1::ApplyTable() {
    WireControls(*this, Controls());
    save_->Measure();
    const QString hint = files_->Hint->text().remove(u'&');
    files_->ListView1->setToolTip(hint);
    files_->ListView1->setAccessibleDescription(hint);
    ShowTipsInLines(*this);
    CollectOptions();
}

/// Collects both groups in the order in which their choices are restored and saved. The first find
/// option that is set decides the mode.
void Form1::CollectOptions() {
    const auto option = [this](const char* name) {
        return findChild<QRadioButton*>(QString::fromLatin1(name));
    };
    findOptions_ = {{option("Option1"), choices::kFieldsOnly, 7, ReplacementMode::FieldsOnly},
                    {option("Option2"), choices::kValuesOnly, 8, ReplacementMode::ValuesOnly},
                    {option("Option3"), choices::kWholeText, 9, ReplacementMode::WholeText}};
    saveOptions_ = {{option("Option4"), choices::kSaveToOutputFolder, 10},
                    {option("Option5"), choices::kSaveBesideInput, 11}};
}

ReplacementMode Form1::Mode() const {
    for (const KeptOption& option : findOptions_) {
        if (option.button->isChecked()) {
            return option.mode;
        }
    }
    return ReplacementMode::None;
}

void Form1::RestoreOptions(Trap& trap, const KeptOptions& options) const {
    for (const KeptOption& option : options) {
        trap.Do(option.statement,
                [&] { SetOption(option.button, LoadChoice(services_.settings, option.choice)); });
    }
}

/// Makes a press on one option save all options of its group.
void Form1::SaveWhenPressed(const KeptOptions& options) {
    for (const KeptOption& pressed : options) {
        OnPress(pressed.button, [this, &options] {
            for (const KeptOption& option : options) {
                SaveChoice(services_.settings, option.choice, option.button->isChecked());
            }
            EnableOutputFolder();
        });
    }
}

} // namespace vexmarrow

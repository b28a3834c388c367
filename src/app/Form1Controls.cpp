// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// The controls of the main window: what they are called, say and do. A new button needs a row here
// and an operation to call; a new find option also needs a row in Choices.h and a mode.

#include "app/ControlHabits.h"
#include "app/ControlTable.h"
#include "app/FileListPanel.h"
#include "app/FileListView.h"
#include "app/FindPanel.h"
#include "app/Form1.h"
#include "app/SavePanel.h"
#include "app/ToolTips.h"
#include "shell/Choices.h"
#include "shell/Trap.h"

#include <QComboBox>
#include <QLabel>
#include <QRadioButton>

#include <array>

namespace vexmarrow {

/// In reading order: the list and its buttons, what to find, where results go, start.
struct Form1::Table {
    using enum ControlGroup;

    static constexpr auto kRows = std::to_array<Control<Form1>>({
        // The files
        {{u"ListView1",
          u"Drag and drop files here. Dou&ble-click item to remove it. Move | line to right and "
          u"out of window to reveal full names.",
          u"", u"File(s)"}},
        {{u"PushButton13", u"&Add VCF File(s)", u"Choose contact files and add them to the list."},
         AddFiles,
         [](Form1& form) { form.fileAdding_.AddFiles(); }},
        {{u"PushButton3", u"Add All VCF File(s) &In Folder",
          u"Add the .vcf files of a folder and of all folders below it, except hidden files, files "
          u"whose names begin with ~, and folders with unusual characters in their names."},
         AddFiles,
         [](Form1& form) { form.fileAdding_.AddAllFilesInFolder(); }},
        {{u"PushButton9", u"Load List &Of Files From File",
          u"Choose text files that contain one path per line, and add all of these paths to the "
          u"list."},
         AddFiles,
         [](Form1& form) { form.fileAdding_.LoadListFiles(); }},
        {{u"PushButton17", u"Remove Filenames Contain. &X",
          u"Remove every file whose path contains a certain text from the list; nothing is deleted "
          u"from the disk."},
         RemoveFiles,
         [](Form1& form) { form.fileRemoval_.RemoveFilenamesContaining(); }},
        {{u"PushButton11", u"Remove Filenames &Not Cont. X",
          u"Keep only the files whose paths contain a certain text in the list; nothing is deleted "
          u"from the disk."},
         RemoveFiles,
         [](Form1& form) { form.fileRemoval_.RemoveFilenamesNotContaining(); }},
        {{u"PushButton2", u"Clear Lis&t",
          u"Remove all files from the list; nothing is deleted from the disk."},
         RemoveFiles,
         [](Form1& form) { form.fileRemoval_.ClearList(); }},
        {{u"PushButton8", u"Load Sample/&Example Files",
          u"Add some example cards to the list and fill in a pair of texts, so that you can try a "
          u"run."},
         Samples,
         [](Form1& form) { form.PushButton8_Click(); }},
        {{u"PushButton5", u"&Help",
          u"Show which files this program is not meant for and how to contact us."},
         Help,
         [](Form1& form) { form.PushButton5_Click(); }},

        // What to find
        {{u"TabControl1", u"", u"", u"Find and replace"}},
        {{u"SinglePair", u"Sin&gle find and replace", u"Replace one text, or one text per line."},
         Tabs},
        {{u"Sets", u"M&ultiple find and replace (sets)",
          u"Replace a list of texts, one after the other."},
         Tabs},
        {{u"Text1", u" Find &what (exact case):",
          u"The text to find, with exact upper and lower case; each line is a separate text if "
          u"fields and values are searched or files are read as vCards."}},
        {{u"Text2", u" &Replace with:",
          u"The replacement; if each line of \"Find what\" is a separate text, it is replaced by "
          u"the same line here. If this box is empty, every text that is found is deleted."}},
        {{u"Combo1", u" Find &what (exact case):",
          u"The texts to find, in the order of the sets; choosing one selects its set."}},
        {{u"Combo2", u" &Replace with:",
          u"The replacements, in the order of the sets; choosing one selects its set."}},
        {{u"SetsTable", u"",
          u"All sets, in the order in which they are applied; select one to remove it with "
          u"\"Remove Selected Set\".",
          u"Sets"}},
        {{u"PushButton7", u"A&dd Set", u"Add a set: a text to find and its replacement."},
         Sets,
         [](Form1& form) { form.setOperations_.AddSet(); }},
        {{u"PushButton6", u"Re&move Selected Set", u"Remove the selected set."},
         Sets,
         [](Form1& form) {
             form.setOperations_.RemoveSelectedSet(form.find_->Combo1->currentIndex(),
                                                   form.find_->Combo2->currentIndex());
         }},
        {{u"PushButton10", u"&Load Sets",
          u"Add the sets of a text file that has one set per line."},
         Sets,
         [](Form1& form) { form.PushButton10_Click(); }},
        {{u"PushButton4", u"&Clear", u"Remove all sets."},
         Sets,
         [](Form1& form) { form.setOperations_.ClearSets(); }},
        {{u"PushButton12", u"Sa&ve Sets", u"Save all sets to a text file, one set per line."},
         Sets,
         [](Form1& form) { form.setOperations_.SaveSets(); }},
        {{u"Frame1", u"&Find Options"}},
        {{u"Option1", u"Find and replace in fields only",
          u"Search only the part of each line before its first colon; the second colon and the "
          u"text after it are dropped unless files are read as vCards."},
         FindOptions},
        {{u"Option2", u"Find and replace in values only",
          u"Search only the part of each line after its first colon; the second colon and the text "
          u"after it are dropped unless files are read as vCards."},
         FindOptions},
        {{u"Option3", u"Find and replace in fields and values",
          u"Search the whole text of each file."},
         FindOptions},
        // No letter of its caption is free, nor one of "Undo Last Run".
        {{u"ReadAsVCards",
          u"Read as vCards (finds text in wrapped or coded lines, leaves photos alone) (&Y)",
          u"Find text in wrapped and coded lines of contact cards, too, and leave photos, sounds, "
          u"keys and everything that is not replaced exactly as they are."}},

        // Where results go
        {{u"Frame2", u"Save O&ption"}},
        {{u"Option5", u"Save results in folder of original file",
          u"Overwrite each file with its result."}},
        {{u"Option4", u"Save results to this folder:",
          u"Save all results in one folder under the names of the original files; originals in "
          u"other folders stay unchanged."}},
        {{u"Text3", u"", u"The folder for the results; it must already exist.",
          u"Save results to this folder:"}},
        {{u"PushButton14", u"...", u"Choose the folder for the results.",
          u"Browse for output folder"},
         None,
         [](Form1& form) { form.PushButton14_Click(); }},
        {{u"PushButton1", u"&Start Replacing",
          u"Find and replace in all listed files, from the first to the last."},
         None,
         [](Form1& form) { form.PushButton1_Click(); }},

        // The line at the foot
        {{u"UseUtf8", u"Use UTF-&8"}, None, [](Form1& form) { form.UseUtf8_Click(); }},
        {{u"UndoLastRun", u"Undo Last Run (&Z)"},
         None,
         [](Form1& form) { form.UndoLastRun_Click(); }},
        {{u"UndoMenu", u"", u"More ways to deal with the old texts that are kept for undoing runs.",
          u"Undo Menu"}},
        {{u"CodePage", u"Code page of unmar&ked files:",
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

/// Both groups in the order in which their choices are restored and saved; the first find option
/// that is set decides.
void Form1::CollectOptions() {
    const auto option = [this](const char* name) {
        return findChild<QRadioButton*>(QString::fromLatin1(name));
    };
    findOptions_ = {{option("Option1"), choices::kFieldsOnly, ReplacementMode::FieldsOnly},
                    {option("Option2"), choices::kValuesOnly, ReplacementMode::ValuesOnly},
                    {option("Option3"), choices::kWholeText, ReplacementMode::WholeText}};
    saveOptions_ = {{option("Option4"), choices::kSaveToOutputFolder},
                    {option("Option5"), choices::kSaveBesideInput}};
}

ReplacementMode Form1::Mode() const {
    for (const KeptOption& option : findOptions_) {
        if (option.button->isChecked()) {
            return option.mode;
        }
    }
    return ReplacementMode::None;
}

int Form1::RestoreOptions(Trap& trap, int line, const KeptOptions& options) {
    for (const KeptOption& option : options) {
        trap.Do(line++,
                [&] { SetOption(option.button, LoadChoice(services_.settings, option.choice)); });
    }
    return line;
}

/// A press on one option saves all options of its group.
void Form1::SaveWhenPressed(const KeptOptions& options) {
    for (const KeptOption& pressed : options) {
        OnPress(pressed.button, [this, &options] {
            for (const KeptOption& option : options) {
                SaveChoice(services_.settings, option.choice, option.button->isChecked());
            }
            FollowOption4();
        });
    }
}

} // namespace vexmarrow

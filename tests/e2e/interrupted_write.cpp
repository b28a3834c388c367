// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// A program that is killed in the middle of writing a file:
//     interrupted_write FOLDER-OF-JOURNALS FILE TEXT
// TEXT must be longer than what the file holds: what lies past its old end is written before that.

#include "base/Utf8.h"
#include "journal/JournaledWriter.h"
#include "support/Faults.h"

int main(int argc, char** argv) {
    using namespace vexmarrow;
    test::FaultySystemCalls calls;
    calls.KillAt(test::FaultySystemCalls::kWriteAt, 3);
    JournaledWriter writer(calls, {argc > 3 ? argv[1] : ""});
    const auto file = writer.Begin(TextFromNativeName(argv[2]), WriteStart::Replace, nullptr);
    file->Append(argv[3]);
    file->Commit();
    return 0; // which is not how it is to end
}

// SPDX-FileCopyrightText: 2026 The Vexmarrow authors
// SPDX-License-Identifier: MIT

// A program that is killed in the middle of writing a file:
//     interrupted_write FOLDER-OF-LOGS FILE TEXT
// TEXT must be shorter than what the file holds: the end of that is still there then.

#include "base/Utf8.h"
#include "safety/SafeWriter.h"
#include "support/Faults.h"

int main(int argc, char** argv) {
    using namespace vexmarrow;
    test::FaultySystemCalls calls;
    calls.KillAt(test::FaultySystemCalls::kTruncate, 1);
    SafeWriter writer(calls, {argc > 3 ? argv[1] : ""});
    const auto file = writer.Begin(TextFromNativeName(argv[2]), nullptr);
    file->Append(argv[3]);
    file->Seal();
    file->Commit();
    return 0; // which is not how it is to end
}

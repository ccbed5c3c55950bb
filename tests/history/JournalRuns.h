#pragma once
// Replaces recorded in a given undo journal, and their Undo, for the tests of the journal.

#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "history/UndoJournal.h"
#include "search/SearchRun.h"
#include "support/OtherUser.h"
#include "support/RecordingHost.h"

namespace vantorel::history {

struct Replaced {
    std::vector<std::string> messages;
    std::vector<FileReport> rows;
};

// Replaces in every file under `folder`, or in `marked` alone when given,
// recorded in `journal` when there is one.
inline Replaced replaceIn(const std::string& folder, UndoJournal* journal, const std::string& find,
                          const std::string& replacement, bool backups = false, unsigned threads = 0,
                          const std::vector<std::string>& marked = {}) {
    RunRequest r;
    r.kind = RunKind::Replace;
    r.jobs = {{find, replacement}};
    r.filter = "*";
    r.startFolder = folder;
    r.makeBackups = backups;
    r.threads = threads;
    r.journal = journal;
    r.markedOnly = !marked.empty();
    r.markedFiles = marked;
    SearchState state;
    vantorel::test::RecordingHost host;
    host.answers = {true};
    RunSearch(r, state, host);
    return {host.messageTexts(), host.rows};
}

// The same, recorded; the messages shown.
inline std::vector<std::string> replace(const std::string& folder, UndoJournal& journal, const std::string& find,
                                        const std::string& replacement, bool backups = false, unsigned threads = 0,
                                        const std::vector<std::string>& marked = {}) {
    return replaceIn(folder, &journal, find, replacement, backups, threads, marked).messages;
}

inline UndoOutcome undoLast(UndoJournal& journal) {
    const std::optional<RecordedRun> run = journal.nextToUndo();
    if (!run) return {};
    const UndoJournal::Undo undo = journal.undo(*run);
    EXPECT_EQ(undo.status, UndoJournal::UndoStatus::Done);
    return undo.outcome;
}

}  // namespace vantorel::history

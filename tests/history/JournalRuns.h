#pragma once
// Replaces recorded in a given undo journal, and their Undo, for the tests of the journal.

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/TemporaryFiles.h"
#include "history/UndoJournal.h"
#include "support/OtherUser.h"
#include "support/Replacing.h"
#include "support/SystemCallFaults.h"
#include "support/TempTree.h"

namespace vantorel::history {

// Replaces in every file under `folder`, or in `marked` alone when given,
// recorded in `journal` when there is one.
inline test::Replaced replaceIn(const std::string& folder, UndoJournal* journal, const std::string& find,
                                const std::string& replacement, bool backups = false, unsigned threads = 0,
                                const std::vector<std::string>& marked = {}) {
    RunRequest r = test::replaceRequest(folder, find, replacement, "*", threads);
    r.makeBackups = backups;
    r.journal = journal;
    r.markedOnly = !marked.empty();
    r.markedFiles = marked;
    return test::runReplace(r);
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

// The tree without the temporary files that a killed run leaves (the next run there clears them).
inline std::map<std::string, std::string> filesIn(const test::TempTree& tree) {
    std::map<std::string, std::string> files = tree.snapshot();
    std::erase_if(files, [](const auto& file) {
        return TemporaryFiles::isTemporaryName(file.first.substr(file.first.rfind('/') + 1));
    });
    return files;
}

// Runs `body` in a child process that is killed just before its `renames`-th
// rename into `folder`; false when it was not.
inline bool killedBeforeRename(const std::string& folder, int renames, const std::function<void()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        int seen = 0;
        test::SystemCallFaults::beforeRename = [&](const std::string&, const std::string& to) {
            if (to.rfind(folder, 0) == 0 && ++seen == renames) ::_exit(0);
        };
        body();
        ::_exit(1);
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Whether `folder` is on another file system than `besides`, and may be written.
inline bool secondFileSystemAt(const char* folder, const test::TempTree& besides) {
    struct stat there {}, here {};
    return ::stat(folder, &there) == 0 && ::stat(besides.root().c_str(), &here) == 0 && there.st_dev != here.st_dev &&
           ::access(folder, W_OK) == 0;
}

}  // namespace vantorel::history

#pragma once
// "vantorel-cli undo": takes back the most recent Replace not yet taken back,
// after asking; "undo --list" lists the recorded Replaces.

#include "core/MessageHost.h"
#include "history/UndoJournal.h"

namespace vantorel::cli {

// Returns the exit status.
int listRuns(const history::UndoJournal& journal);
int undoLastRun(history::UndoJournal& journal, MessageHost& asker);

}  // namespace vantorel::cli

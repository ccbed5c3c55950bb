#pragma once
// The words in which a recorded Replace is described and its Undo asked for.

#include <string>

#include "core/MessageHost.h"
#include "history/UndoJournal.h"

namespace vantorel::history {

// "2026-11-23 21:40:12" in local time.
std::string runTime(const RecordedRun& run);
// "3 file(s) changed in /data (*.txt)" then, one a line, each step: "cat" -> "dog".
std::string runSummary(const RecordedRun& run);
// "Undo the Replace of <time>?", a blank line, the summary.
std::string undoQuestion(const RecordedRun& run);

// "The undo journal <folder> is not used: <why>." for a journal that is not
// trusted, and "Nothing was undone." after it.
std::string journalRefused(const std::string& folder, const Distrust& why);
std::string undoRefused(const std::string& folder, const Distrust& why);
// The same for one recorded run that is not trusted.
std::string runRefused(const RecordedRun& run, const Distrust& why);
// What a Replace says when its journal is not trusted: it goes on, not recorded.
Message replaceNotRecorded(const std::string& folder, const Distrust& why);

inline constexpr const char* kNothingToUndo = "There is no Replace to undo.";
inline constexpr const char* kUndoBusy = "A Replace is being written; undo it once it has finished.";
inline constexpr const char* kUndoUnreadable = "The record of this Replace cannot be read; it cannot be undone.";
inline constexpr const char* kUndoTitle = "Undo Last Replace";

}  // namespace vantorel::history

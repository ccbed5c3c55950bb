#pragma once
// The words in which a recorded Replace is described and its Undo asked for.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/MessageHost.h"
#include "history/UndoJournal.h"

namespace vantorel::history {

// "2026-11-23 21:40:12" in local time.
std::string runTime(const RecordedRun& run);
// How many of a run's steps are named; a batch job's further steps are
// counted, so that a job of thousands of steps is still described in a
// screenful.
inline constexpr std::size_t kStepsListed = 20;
// The steps, each as "cat" -> "dog", joined by `separator`: the first
// kStepsListed, then "... and 5 more step(s)" for the rest.
std::string runSteps(const RecordedRun& run, std::string_view separator);
// "3 file(s) changed in /data (*.txt)" then, one a line, the steps.
std::string runSummary(const RecordedRun& run);
// "Undo the Replace of <time>?", a blank line, the summary.
std::string undoQuestion(const RecordedRun& run);

// "Not enough free space to keep the replaced files (12.3 MB) for Undo:
// this Replace cannot be undone.", without the size when not known.
std::string notEnoughSpaceToKeep(std::uint64_t bytes = 0);
// "12.3 MB" and the like.
std::string bytesText(std::uint64_t bytes);
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
// The folder of a Replace can no longer be reached as it was.
std::string undoFolderGone(const std::string& folder, int error);
inline constexpr const char* kRunUnreadable =
    "cannot be read (recorded by an earlier version, or damaged at its start): Undo passes over it";
inline constexpr const char* kUndoTitle = "Undo Last Replace";

}  // namespace vantorel::history

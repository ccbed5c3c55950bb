#pragma once
// The queue of a batch run: a job's entries looked up in the library, in
// order, each becoming one find/replace step of the runs that follow, and the
// label that tells the main window's user which job is queued.

#include <optional>
#include <string>
#include <vector>

#include "core/MessageHost.h"
#include "library/LibraryEntry.h"
#include "core/RunTypes.h"

namespace vantorel {

struct BatchQueue {
    std::vector<FindReplaceJob> steps;  // patterns and replacements as stored, untranslated
    std::string label;
};

// "Batch Commands Queued", followed by the job's name in brackets when it has one.
std::string batchLabel(const std::string& jobName);

// The first entry named exactly `name` (letter case counts), or null.
const LibraryEntry* findEntry(const std::vector<LibraryEntry>& library, const std::string& name);

// "Saved expression '<name>' does not exist in library"
Message missingEntry(const std::string& name);

// The queue of a job: each entry name looked up in `library` from the first
// entry on. The first name that is missing is said through `messages`, and
// nothing is queued.
std::optional<BatchQueue> queueJob(const std::string& jobName, const std::vector<std::string>& entryNames,
                                   const std::vector<LibraryEntry>& library, MessageHost& messages);

}  // namespace vantorel

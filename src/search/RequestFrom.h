#pragma once
// A run's request from what the user gave a front end: the window's boxes,
// options and settings, or the command line's arguments.

#include <optional>
#include <string>
#include <vector>

#include "core/RunTypes.h"
#include "search/JobSource.h"

namespace vantorel {

struct RunInputs {
    RunKind kind = RunKind::Find;
    JobSource jobs;
    // As given; a relative folder is taken from the current folder.
    std::string folder;
    std::string filter;
    bool regularExpression = false;
    bool ignoreCase = false;
    bool wholeWords = false;
    bool scanSubfolders = true;
    bool skipVersionControl = true;
    bool makeBackups = false;
    bool showAll = false;
    // Set: the run goes over these files (full paths) and nothing else.
    std::optional<std::vector<std::string>> markedFiles;
    unsigned threads = 0;
    bool dryRun = false;
    std::optional<ChangeLines> changes;
};

// The request of those inputs. What is still wrong with it (a pattern, the
// filter, the folder) the run itself refuses, with its own messages.
RunRequest requestFrom(RunInputs inputs);

}  // namespace vantorel

#pragma once
// A run's request from what the user gave a front end: the window's boxes,
// options and settings, or the command line's arguments.

#include <optional>
#include <string>
#include <vector>

#include "core/RunTypes.h"
#include "search/JobSource.h"

namespace vantorel {

// Completes a request that a front end filled with the user's options and
// the start folder as given: the jobs and whether they are a batch from
// their source, a relative folder taken from the current folder, and, when
// given, the files (full paths) the run goes over and nothing else. What is
// still wrong with it (a pattern, the filter, the folder) the run itself
// refuses, with its own messages.
RunRequest requestFrom(RunRequest request, JobSource jobs,
                       std::optional<std::vector<std::string>> markedFiles = std::nullopt);

}  // namespace vantorel

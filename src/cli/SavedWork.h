#pragma once
// The saved work on the command line: the library and the batch jobs listed,
// and a run's find/replace pairs taken from a library entry or a batch job.

#include <optional>
#include <vector>

#include "cli/CliOptions.h"
#include "core/MessageHost.h"
#include "core/RunTypes.h"

namespace vantorel::cli {

// "library" and "jobs": prints the records on standard output; the exit status.
int listSavedWork(const CliOptions& options);

// The pairs of a run: as typed, a library entry's (--entry), or a batch job's
// steps (--job). Nothing when they cannot be had, once said on standard error
// (a missing entry through `messages`, as the window says it).
std::optional<std::vector<FindReplaceJob>> runSteps(const CliOptions& options, MessageHost& messages);

}  // namespace vantorel::cli

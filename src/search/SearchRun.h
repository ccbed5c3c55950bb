#pragma once
// The driver of a whole Find, Replace or Extract: validate the input, build
// the file list (or take the marked files), walk the files, ask before
// replacing, and report the summary.

#include "core/SearchState.h"
#include "search/RunHost.h"
#include "core/RunTypes.h"

namespace vantorel {

// A stop already asked for (state.stopRequested) ends the run at its first check.
RunOutcome RunSearch(const RunRequest& request, SearchState& state, RunHost& host);

// The summary texts of a pass.
std::string searchSummary(std::uint64_t filesDone, std::uint64_t matches, std::uint64_t filesWithMatches);
std::string replaceSummary(std::uint64_t filesDone, std::uint64_t matches, std::uint64_t filesWithMatches);

}  // namespace vantorel

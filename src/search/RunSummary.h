#pragma once
// What a front end says once a run has ended, beyond the boxes the run
// showed: which pattern a refused run could not take, and the summary as a
// status line with the notes that the run's summary messages add to it.

#include <cstddef>
#include <string>
#include <vector>

#include "core/MessageHost.h"
#include "core/PatternError.h"
#include "core/RunTypes.h"

namespace vantorel {

// The line under "Regular Expression is invalid...": what is wrong where,
// led by "Step N: " in a batch run (whatever the number of its steps), as
// the pattern is then a step of the queue and not the text in the find box.
std::string invalidPatternLine(const PatternError& error, std::size_t job, bool batch, bool regularExpression);

struct SummaryParts {
    std::string status;               // the status line (outcome.statusText)
    std::vector<std::string> notes;   // each summary message's own lines, CR LF kept
};

// The summary of a completed run from its outcome and the Summary messages
// it showed, in order. A box that repeats the status line (a Replace's)
// gives only the lines below it; one that is nothing but the status line
// gives no note.
SummaryParts summaryParts(const RunOutcome& outcome, const std::vector<Message>& summaries);

}  // namespace vantorel

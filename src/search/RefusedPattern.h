#pragma once
// What a front end says once a run has refused a pattern: which one, and
// what is wrong where.

#include <cstddef>
#include <string>

#include "core/PatternError.h"

namespace vantorel {

// The line under "Regular Expression is invalid...": what is wrong where,
// led by "Step N: " in a batch run (whatever the number of its steps), as
// the pattern is then a step of the queue and not the text in the find box.
std::string invalidPatternLine(const PatternError& error, std::size_t job, bool batch, bool regularExpression);

}  // namespace vantorel

#include "search/RefusedPattern.h"

#include "regex/PatternConstruction.h"

namespace vantorel {

std::string invalidPatternLine(const PatternError& error, std::size_t job, bool batch, bool regularExpression) {
    std::string line = batch ? "Step " + std::to_string(job + 1) + ": " : std::string();
    return line + describePatternError(error, regularExpression);
}

}  // namespace vantorel

#include "search/RunSummary.h"

#include "regex/PatternConstruction.h"

namespace vantorel {

std::string invalidPatternLine(const PatternError& error, std::size_t job, bool batch, bool regularExpression) {
    std::string line = batch ? "Step " + std::to_string(job + 1) + ": " : std::string();
    return line + describePatternError(error, regularExpression);
}

SummaryParts summaryParts(const RunOutcome& outcome, const std::vector<Message>& summaries) {
    SummaryParts parts{outcome.statusText, {}};
    const std::string lead = outcome.statusText + "\r\n";
    for (const Message& message : summaries) {
        if (message.text == outcome.statusText) continue;
        if (message.text.starts_with(lead)) parts.notes.push_back(message.text.substr(lead.size()));
        else parts.notes.push_back(message.text);
    }
    return parts;
}

}  // namespace vantorel

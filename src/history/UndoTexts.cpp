#include "history/UndoTexts.h"

#include <algorithm>

#include "files/FileFunctions.h"

namespace vantorel::history {

std::string runTime(const RecordedRun& run) {
    return formatDateTime(static_cast<std::time_t>(run.header.startedNs / 1000000000));
}

std::string runSteps(const RecordedRun& run, std::string_view separator) {
    std::string text;
    const std::size_t listed = std::min(run.steps.size(), kStepsListed);
    for (std::size_t i = 0; i < listed; ++i) {
        if (i > 0) text += separator;
        text += "\"" + run.steps[i].find + "\" -> \"" + run.steps[i].replace + "\"";
    }
    if (run.steps.size() > listed)
        text.append(separator).append("... and " + std::to_string(run.steps.size() - listed) + " more step(s)");
    return text;
}

std::string runSummary(const RecordedRun& run) {
    std::string text = std::to_string(run.filesWritten) + " file(s) changed in " + run.header.folder + " (" +
                       run.header.filter + ")";
    if (!run.steps.empty()) text += "\r\n" + runSteps(run, "\r\n");
    return text;
}

std::string undoQuestion(const RecordedRun& run) {
    return "Undo the Replace of " + runTime(run) + "?\r\n\r\n" + runSummary(run);
}

}  // namespace vantorel::history

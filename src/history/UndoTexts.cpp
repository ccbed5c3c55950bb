#include "history/UndoTexts.h"

#include "files/FileFunctions.h"

namespace vantorel::history {

std::string runTime(const RecordedRun& run) {
    return formatDateTime(static_cast<std::time_t>(run.header.startedNs / 1000000000));
}

std::string runSummary(const RecordedRun& run) {
    std::string text = std::to_string(run.filesWritten) + " file(s) changed in " + run.header.folder + " (" +
                       run.header.filter + ")";
    for (const JournalStep& step : run.steps) text += "\r\n\"" + step.find + "\" -> \"" + step.replace + "\"";
    return text;
}

std::string undoQuestion(const RecordedRun& run) {
    return "Undo the Replace of " + runTime(run) + "?\r\n\r\n" + runSummary(run);
}

}  // namespace vantorel::history

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

std::string journalRefused(const std::string& folder, const Distrust& why) {
    return "The undo journal " + folder + " is not used: " + describe(why) + ".";
}

std::string undoRefused(const std::string& folder, const Distrust& why) {
    return journalRefused(folder, why) + "\r\nNothing was undone.";
}

std::string runRefused(const RecordedRun& run, const Distrust& why) {
    return "The record of the Replace " + run.name + " is not used: " + describe(why) + ".\r\nNothing was undone.";
}

Message replaceNotRecorded(const std::string& folder, const Distrust& why) {
    return Message{"Undo will not be able to take back this Replace, which is not recorded.\r\n" +
                       journalRefused(folder, why),
                   kProgramTitle, MessageIcon::Warning, MessageKind::FileError};
}

}  // namespace vantorel::history

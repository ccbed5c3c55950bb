#include "history/UndoTexts.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iterator>

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

std::string bytesText(std::uint64_t bytes) {
    if (bytes < 1024) return std::to_string(bytes) + " bytes";
    const char* const units[] = {"KB", "MB", "GB", "TB"};
    double value = static_cast<double>(bytes) / 1024;
    std::size_t unit = 0;
    for (; value >= 1024 && unit + 1 < std::size(units); ++unit) value /= 1024;
    char text[32];
    std::snprintf(text, sizeof text, "%.1f %s", value, units[unit]);
    return text;
}

std::string notEnoughSpaceToKeep(std::uint64_t bytes) {
    return "Not enough free space to keep the replaced files" + (bytes ? " (" + bytesText(bytes) + ")" : std::string()) +
           " for Undo: this Replace cannot be undone.";
}

std::string undoFolderGone(const std::string& folder, int error) {
    const bool moved = error == ELOOP || error == ESTALE || error == EXDEV || error == ENOTDIR;
    return "The folder of this Replace, " + folder +
           (moved ? ", is no longer where it was (it, or a folder on its way, was moved or replaced by a link)"
                  : ", cannot be reached: " + systemErrorText(error)) +
           ". Nothing was restored.";
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

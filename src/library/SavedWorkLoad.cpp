#include "library/SavedWorkLoad.h"

#include <exception>

#include "library/RecordFile.h"

namespace vantorel {
namespace {

Message fileError(std::string text) {
    return Message{std::move(text), kProgramTitle, MessageIcon::None, MessageKind::FileError};
}

// The reason of the error in flight, after its file when `detail` names it.
std::string reasonOf(LoadDetail detail) {
    try {
        throw;
    } catch (const RecordFileError& error) {
        if (detail == LoadDetail::FileNamed) return error.path().string() + ": " + error.what();
        return error.what();
    } catch (const std::exception& error) {
        return error.what();
    }
}

}  // namespace

Message libraryNotLoaded(std::string_view detail) {
    std::string text = "Error loading regular expression library.";
    if (!detail.empty()) text += "\r\n" + std::string(detail);
    return fileError(std::move(text));
}

Message jobsNotLoaded(std::string_view detail) {
    return fileError("Error loading batch jobs list: " + std::string(detail));
}

std::optional<std::vector<LibraryEntry>> loadLibrary(const LibraryFile& file, MessageHost& messages,
                                                     LoadDetail detail) {
    try {
        return file.read();
    } catch (const std::exception&) {
        messages.showMessage(libraryNotLoaded(detail == LoadDetail::FileNamed ? reasonOf(detail) : ""));
        return std::nullopt;
    }
}

std::optional<std::vector<std::string>> loadJobLines(const BatchJobFile& file, MessageHost& messages,
                                                     LoadDetail detail) {
    try {
        return file.jobLines();
    } catch (const std::exception&) {
        messages.showMessage(jobsNotLoaded(reasonOf(detail)));
        return std::nullopt;
    }
}

}  // namespace vantorel

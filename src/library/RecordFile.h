#pragma once
// A text file of the program's own records ("RegEx.txt", "BatchJobs.txt"):
// one record a line, its fields joined by tabs, lines ended by CR LF, written
// as UTF-8 (a file that is not UTF-8 is read as Windows-1252). Every change
// goes through a temporary file that is renamed over the old one, so the
// file is never left half-written.

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

// A record file that could not be read or written: what() is the system's
// description ("Permission denied"), path() the file, or the folder that
// could not be entered to reach it.
class RecordFileError : public std::runtime_error {
public:
    RecordFileError(std::filesystem::path path, const std::string& reason)
        : std::runtime_error(reason), path_(std::move(path)) {}
    const std::filesystem::path& path() const noexcept { return path_; }

private:
    std::filesystem::path path_;
};

class RecordFile {
public:
    // The file `name` where the program keeps its data files: beside the
    // executable in `programFolder` when that folder is writable, else in the
    // user's data folder (the installed copy is read when neither has one).
    RecordFile(std::filesystem::path programFolder, std::string name);
    // The file `name` in `folder` and nowhere else.
    static RecordFile inFolder(std::filesystem::path folder, std::string name);

    // The file to read, or empty when there is none.
    std::filesystem::path readPath() const;
    // The file that changes are written to.
    std::filesystem::path writePath() const;

    // The file's text as UTF-8, without a byte-order mark; nothing when there
    // is no file. Throws RecordFileError when the file cannot be read or its
    // folder cannot be entered (std::runtime_error for a file too large).
    std::optional<std::string> text() const;
    // Replaces the whole file with `text`, creating its folder when needed.
    // A link stays a link: the file it leads to gets the text (and is made
    // when it is not there yet). Throws RecordFileError.
    void replaceWith(const std::string& text) const;

private:
    RecordFile(std::filesystem::path folder, std::string name, bool exact);

    std::filesystem::path folder_;
    std::string name_;
    bool exact_ = false;  // only `folder_`, not the program's data folders
};

// A record file's bytes as UTF-8 text, without a byte-order mark.
std::string recordText(std::string_view bytes);
// The lines of a text, split at each LF, a CR before it removed; a last line
// without an end counts, an empty text has none.
std::vector<std::string_view> recordLines(std::string_view text);
// The fields of a line, split at every tab.
std::vector<std::string_view> recordFields(std::string_view line);

}  // namespace vantorel

#pragma once
// "RegEx.txt", the file of the expression library: one entry a line, its
// name, pattern and replacement joined by tabs, lines ended by CR LF, written
// as UTF-8 (a file that is not UTF-8 is read as Windows-1252). Every change
// goes through a temporary file that is renamed over the old one, so the
// library is never left half-written.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "library/LibraryEntry.h"
#include "library/RecordFile.h"

namespace vantorel {

inline constexpr const char* kLibraryFileName = "RegEx.txt";

// The entries of a library file's bytes, in file order. A blank line or a
// line without a tab is skipped; a line of two fields has an empty
// replacement; a line of exactly three fields gives all three; a line of four
// or more keeps its first two and has an empty replacement.
std::vector<LibraryEntry> parseLibrary(std::string_view bytes);

// One line of the file: name, tab, pattern, tab, replacement, CR LF.
std::string libraryRecord(const LibraryEntry& entry);

// False when a field holds a tab or a line break, which would break its line.
bool fitsOnOneLine(const LibraryEntry& entry);

class LibraryFile {
public:
    // `programFolder` holds the program file: the library lives there when
    // that folder is writable, else in the user's data folder.
    explicit LibraryFile(std::filesystem::path programFolder);
    // The library in a file of its own choosing.
    explicit LibraryFile(RecordFile file);

    // The file to read (the data folder's, else the one beside the program),
    // or empty when there is none.
    std::filesystem::path readPath() const { return file_.readPath(); }
    // The file that changes are written to.
    std::filesystem::path writePath() const { return file_.writePath(); }

    // The entries; none when there is no file. Throws std::runtime_error with
    // the system's description when the file cannot be read.
    std::vector<LibraryEntry> read() const;
    // Adds a record after what the file holds now, which stays as it is (text
    // in Windows-1252 is converted to UTF-8). Throws std::runtime_error.
    void append(const LibraryEntry& entry) const;
    // Replaces the file's records with these. Throws std::runtime_error.
    void rewrite(const std::vector<LibraryEntry>& entries) const;

private:
    RecordFile file_;
};

}  // namespace vantorel

#include "library/LibraryFile.h"

namespace vantorel {

std::vector<LibraryEntry> parseLibrary(std::string_view bytes) {
    const std::string text = recordText(bytes);
    std::vector<LibraryEntry> entries;
    for (const std::string_view line : recordLines(text)) {
        const std::vector<std::string_view> fields = recordFields(line);
        if (fields.size() < 2) continue;  // blank, or no tab
        entries.push_back(LibraryEntry{std::string(fields[0]), std::string(fields[1]),
                                       fields.size() == 3 ? std::string(fields[2]) : std::string()});
    }
    return entries;
}

std::string libraryRecord(const LibraryEntry& entry) {
    return entry.name + '\t' + entry.pattern + '\t' + entry.replacement + "\r\n";
}

bool fitsOnOneLine(const LibraryEntry& entry) {
    for (const std::string* field : {&entry.name, &entry.pattern, &entry.replacement})
        if (field->find_first_of("\t\r\n") != std::string::npos) return false;
    return true;
}

LibraryFile::LibraryFile(std::filesystem::path programFolder)
    : file_(std::move(programFolder), kLibraryFileName) {}

LibraryFile::LibraryFile(RecordFile file) : file_(std::move(file)) {}

std::vector<LibraryEntry> LibraryFile::read() const { return parseLibrary(file_.text().value_or("")); }

void LibraryFile::append(const LibraryEntry& entry) const {
    std::string text = file_.text().value_or("");
    if (!text.empty() && !text.ends_with('\n')) text += "\r\n";
    file_.replaceWith(text + libraryRecord(entry));
}

void LibraryFile::rewrite(const std::vector<LibraryEntry>& entries) const {
    std::string text;
    for (const LibraryEntry& entry : entries) text += libraryRecord(entry);
    file_.replaceWith(text);
}

}  // namespace vantorel

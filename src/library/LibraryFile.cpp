#include "library/LibraryFile.h"

#include <stdexcept>
#include <system_error>

#include "core/AtomicFileWriter.h"
#include "core/ProgramFolder.h"
#include "core/TextEncoding.h"
#include "search/FileText.h"

namespace vantorel {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The file's text as UTF-8, without a byte-order mark.
std::string asUtf8(std::string_view bytes) {
    if (!isValidUtf8(bytes)) return windows1252ToUtf8(bytes);
    if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
    return std::string(bytes);
}

std::vector<std::string_view> splitAtTabs(std::string_view line) {
    std::vector<std::string_view> fields;
    for (std::size_t start = 0;;) {
        const std::size_t tab = line.find('\t', start);
        fields.push_back(line.substr(start, tab == std::string_view::npos ? std::string_view::npos : tab - start));
        if (tab == std::string_view::npos) return fields;
        start = tab + 1;
    }
}

}  // namespace

std::vector<LibraryEntry> parseLibrary(std::string_view bytes) {
    const std::string text = asUtf8(bytes);
    std::vector<LibraryEntry> entries;
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        std::string_view line = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        const std::vector<std::string_view> fields = splitAtTabs(line);
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

LibraryFile::LibraryFile(std::filesystem::path programFolder) : programFolder_(std::move(programFolder)) {}

std::filesystem::path LibraryFile::readPath() const { return findProgramFile(programFolder_, kLibraryFileName); }

std::filesystem::path LibraryFile::writePath() const {
    return programDataFolder(programFolder_) / kLibraryFileName;
}

std::string LibraryFile::currentText() const {
    const std::filesystem::path path = readPath();
    if (path.empty()) return {};
    FileText::Result result = FileText::read(path.string());
    switch (result.status) {
        case FileText::Status::Ok: return asUtf8(result.text.bytes());
        case FileText::Status::Vanished: return {};
        case FileText::Status::TooLarge: throw std::runtime_error(tooLargeMessage(path.string()));
        case FileText::Status::Error: break;
    }
    throw std::runtime_error(result.error);
}

std::vector<LibraryEntry> LibraryFile::read() const { return parseLibrary(currentText()); }

void LibraryFile::append(const LibraryEntry& entry) const {
    std::string text = currentText();
    if (!text.empty() && !text.ends_with('\n')) text += "\r\n";
    replaceWith(text + libraryRecord(entry));
}

void LibraryFile::rewrite(const std::vector<LibraryEntry>& entries) const {
    std::string text;
    for (const LibraryEntry& entry : entries) text += libraryRecord(entry);
    replaceWith(text);
}

void LibraryFile::replaceWith(const std::string& bytes) const {
    const std::filesystem::path target = writePath();
    try {
        std::filesystem::create_directories(target.parent_path());
        AtomicFileWriter writer(target.string());
        writer.write(bytes);
        writer.commit();
    } catch (const std::system_error& error) {
        throw std::runtime_error(error.code().message());
    }
}

}  // namespace vantorel

#include "library/RecordFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "core/AtomicFileWriter.h"
#include "core/ProgramFolder.h"
#include "core/TextEncoding.h"
#include "files/FileFunctions.h"
#include "files/FileText.h"

namespace vantorel {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The error of a file that could not be had, naming the folder instead when
// that is what could not be entered.
RecordFileError unreachable(const std::filesystem::path& path, int error) {
    const std::filesystem::path folder = path.parent_path();
    const bool folderShut = error == EACCES && !folder.empty() && ::access(folder.c_str(), X_OK) != 0;
    return RecordFileError(folderShut ? folder : path, systemErrorText(error));
}

// Where the links starting at `path` end: the file to write. A link that
// leads nowhere gives the name the file is to have.
std::filesystem::path linkedFile(std::filesystem::path path) {
    for (int links = 0;; ++links) {
        std::error_code ec;
        if (!std::filesystem::is_symlink(path, ec)) return path;
        if (links == 40) throw unreachable(path, ELOOP);  // as the system gives up
        const std::filesystem::path next = std::filesystem::read_symlink(path, ec);
        if (ec) throw unreachable(path, ec.value());
        path = next.is_absolute() ? next : path.parent_path() / next;
    }
}

}  // namespace

std::string recordText(std::string_view bytes) {
    if (!isValidUtf8(bytes)) return windows1252ToUtf8(bytes);
    if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
    return std::string(bytes);
}

std::vector<std::string_view> recordLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string_view> recordFields(std::string_view line) {
    std::vector<std::string_view> fields;
    for (std::size_t start = 0;;) {
        const std::size_t tab = line.find('\t', start);
        fields.push_back(line.substr(start, tab == std::string_view::npos ? std::string_view::npos : tab - start));
        if (tab == std::string_view::npos) return fields;
        start = tab + 1;
    }
}

RecordFile::RecordFile(std::filesystem::path programFolder, std::string name)
    : RecordFile(std::move(programFolder), std::move(name), false) {}

RecordFile::RecordFile(std::filesystem::path folder, std::string name, bool exact)
    : folder_(std::move(folder)), name_(std::move(name)), exact_(exact) {}

RecordFile RecordFile::inFolder(std::filesystem::path folder, std::string name) {
    return RecordFile(std::move(folder), std::move(name), true);
}

std::filesystem::path RecordFile::readPath() const {
    if (!exact_) return findProgramFile(folder_, name_);
    std::error_code ec;
    const std::filesystem::path path = folder_ / name_;
    return std::filesystem::exists(path, ec) ? path : std::filesystem::path();
}

std::filesystem::path RecordFile::writePath() const {
    return (exact_ ? folder_ : programDataFolder(folder_)) / name_;
}

std::optional<std::string> RecordFile::text() const {
    // Only a file that is not there is an empty one: a folder that cannot be
    // entered, or a file that cannot be looked at, is not.
    const std::filesystem::path own = writePath();
    struct stat st {};
    if (::stat(own.c_str(), &st) != 0 && errno != ENOENT) throw unreachable(own, errno);
    const std::filesystem::path path = readPath();
    if (path.empty()) return std::nullopt;
    FileText::Result result = FileText::read(path.string());
    switch (result.status) {
        case FileText::Status::Ok: return recordText(result.text.bytes());
        case FileText::Status::Vanished: return std::nullopt;
        case FileText::Status::TooLarge: throw std::runtime_error(tooLargeMessage(path.string()));
        case FileText::Status::Error: break;
    }
    throw RecordFileError(path, result.error);
}

void RecordFile::replaceWith(const std::string& text) const {
    const std::filesystem::path target = linkedFile(writePath());
    try {
        std::filesystem::create_directories(target.parent_path());
        AtomicFileWriter writer(target.string());
        writer.write(text);
        writer.commit();
    } catch (const std::system_error& error) {
        throw RecordFileError(target, error.code().message());
    }
}

}  // namespace vantorel

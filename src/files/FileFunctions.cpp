#include "files/FileFunctions.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace vantorel {

bool FileExists(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool FolderExists(const std::string& path) {
    struct stat st {};
    return !path.empty() && ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool IsReadOnly(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && (st.st_mode & S_IWUSR) == 0;
}

std::string FileNameOf(std::string_view path) {
    const auto slash = path.rfind(kPathSeparator);
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::string FolderOf(std::string_view path) {
    const auto slash = path.rfind(kPathSeparator);
    return slash == std::string_view::npos ? std::string() : std::string(path.substr(0, slash + 1));
}

std::string withTrailingSeparator(std::string folder) {
    if (folder.empty() || folder.back() != kPathSeparator) folder += kPathSeparator;
    return folder;
}

std::string realFolderOf(const std::string& folder) {
    std::unique_ptr<char, decltype(&std::free)> real(::realpath(folder.c_str(), nullptr), &std::free);
    return withTrailingSeparator(real ? std::string(real.get()) : folder);
}

std::string backupNameFor(const std::string& path) {
    const std::size_t nameLength = path.size() - FolderOf(path).size();
    std::string name = nameLength >= 4 && path[path.size() - 4] == '.'
                           ? path.substr(0, path.size() - 4) + ".bak"
                           : path + ".bak";
    if (name == path) name = path + ".bak";
    return name;
}

std::string formatDateTime(std::time_t time) {
    std::tm local {};
    localtime_r(&time, &local);
    char buffer[32];
    std::strftime(buffer, sizeof buffer, "%Y-%m-%d %H:%M:%S", &local);
    return buffer;
}

bool deleteFile(const std::string& path) {
    return ::unlink(path.c_str()) == 0;
}

std::string systemErrorText(int error) {
    char buffer[256];
    // GNU strerror_r returns the text, which may or may not be in buffer.
    return ::strerror_r(error, buffer, sizeof buffer);
}

}  // namespace vantorel

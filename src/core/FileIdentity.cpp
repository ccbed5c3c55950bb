#include "core/FileIdentity.h"

namespace vantorel {

std::optional<FileIdentity> FileIdentity::of(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) return std::nullopt;
    return of(st);
}

std::optional<FileIdentity> FileIdentity::ofOpen(int fd) {
    struct stat st {};
    if (::fstat(fd, &st) != 0) return std::nullopt;
    return of(st);
}

}  // namespace vantorel

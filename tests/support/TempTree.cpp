#include "support/TempTree.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vantorel::test {
namespace {

bool setImmutable(const std::string& folder, bool on) {
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return false;
    int flags = 0;
    bool done = ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
    done = done && ::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    ::close(fd);
    return done;
}

}  // namespace

TempTree::TempTree() : TempTree(std::getenv("TMPDIR") && *std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "/tmp") {}

TempTree::TempTree(const std::string& base) {
    std::string pattern = base + "/vantorel-test-XXXXXX";
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
    root_ = pattern;
}

TempTree::~TempTree() {
    for (const std::string& folder : locked_) setImmutable(folder, false);
    std::error_code ec;
    // Read-only files and folders must not keep the tree alive.
    for (auto it = std::filesystem::recursive_directory_iterator(root_, ec);
         it != std::filesystem::recursive_directory_iterator(); it.increment(ec)) {
        if (!it->is_symlink()) ::chmod(it->path().c_str(), 0755);
    }
    std::filesystem::remove_all(root_, ec);
}

std::string TempTree::path(const std::string& relative) const {
    return relative.empty() ? root_ : root_ + "/" + relative;
}

std::string TempTree::write(const std::string& relative, const std::string& bytes, int mode) const {
    const std::string full = path(relative);
    std::filesystem::create_directories(std::filesystem::path(full).parent_path());
    ::chmod(full.c_str(), 0644);
    {
        std::ofstream out(full, std::ios::binary | std::ios::trunc);
        out << bytes;
    }
    ::chmod(full.c_str(), static_cast<mode_t>(mode));
    return full;
}

std::string TempTree::mkdir(const std::string& relative) const {
    std::filesystem::create_directories(path(relative));
    return path(relative);
}

std::string TempTree::read(const std::string& relative) const { return fileText(path(relative)); }

std::string fileText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

bool TempTree::exists(const std::string& relative) const {
    struct stat st {};
    return ::lstat(path(relative).c_str(), &st) == 0;
}

int TempTree::mode(const std::string& relative) const {
    struct stat st {};
    if (::stat(path(relative).c_str(), &st) != 0) return -1;
    return static_cast<int>(st.st_mode & 07777);
}

std::vector<std::string> TempTree::names(const std::string& relative) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path(relative)))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

void TempTree::allowNewFiles(const std::string& relative) const {
    const std::string folder = path(relative);
    setImmutable(folder, false);
    std::erase(locked_, folder);
    ::chmod(folder.c_str(), 0755);
}

bool TempTree::refuseNewFiles(const std::string& relative) const {
    const std::string folder = path(relative);
    ::chmod(folder.c_str(), 0555);
    if (::geteuid() == 0 && setImmutable(folder, true)) locked_.push_back(folder);
    const std::string probe = folder + "/probe";
    const int fd = ::open(probe.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0644);
    if (fd < 0) return true;
    ::close(fd);
    ::unlink(probe.c_str());
    return false;
}

std::map<std::string, std::string> TempTree::snapshot() const {
    std::map<std::string, std::string> files;
    std::error_code ec;
    for (auto it = std::filesystem::recursive_directory_iterator(root_, ec);
         it != std::filesystem::recursive_directory_iterator(); it.increment(ec)) {
        const std::string relative = it->path().string().substr(root_.size() + 1);
        if (it->is_symlink()) files[relative] = "link " + std::filesystem::read_symlink(it->path()).string();
        else if (it->is_regular_file()) files[relative] = std::to_string(mode(relative)) + " " + read(relative);
    }
    return files;
}

}  // namespace vantorel::test

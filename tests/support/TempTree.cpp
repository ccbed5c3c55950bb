#include "support/TempTree.h"

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vantorel::test {

TempTree::TempTree() {
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/vantorel-test-XXXXXX";
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
    root_ = pattern;
}

TempTree::~TempTree() {
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

std::string TempTree::read(const std::string& relative) const {
    std::ifstream in(path(relative), std::ios::binary);
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

}  // namespace vantorel::test

#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace vantorel {

// The files of a run: every folder visited (each ending with the separator,
// the first being the start folder), the file names found, and for each
// name the position of its folder.
struct FileList {
    std::vector<std::string> folders;
    std::vector<std::string> names;
    std::vector<std::uint32_t> folderIndex;

    std::size_t size() const noexcept { return names.size(); }
    bool empty() const noexcept { return names.empty(); }
    std::string path(std::size_t i) const { return folders[folderIndex[i]] + names[i]; }
    // Adds a file given by its full path, with a folder slot of its own.
    void addPath(const std::string& fullPath);
};

}  // namespace vantorel

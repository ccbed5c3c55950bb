#include "files/DroppedPath.h"

#include <filesystem>

namespace vantorel {

std::string startFolderForDrop(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path dropped = fs::path(path).lexically_normal();
    const fs::file_status status = fs::status(dropped, ec);
    if (ec || !fs::exists(status)) return {};
    fs::path folder = fs::is_directory(status) ? dropped : dropped.parent_path();
    std::string text = folder.string();
    if (text.size() > 1 && text.back() == '/') text.pop_back();
    return text;
}

}  // namespace vantorel

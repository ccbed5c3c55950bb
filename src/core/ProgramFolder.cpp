#include "core/ProgramFolder.h"

#include <unistd.h>

#include <cstdlib>
#include <system_error>

namespace vantorel {

std::filesystem::path userDataFolder() {
    const char* xdg = std::getenv("XDG_DATA_HOME");
    if (xdg && *xdg == '/') return std::filesystem::path(xdg) / "vantorel";
    const char* home = std::getenv("HOME");
    if (home && *home) return std::filesystem::path(home) / ".local" / "share" / "vantorel";
    return {};
}

std::filesystem::path executableFolder() {
    std::error_code ec;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::filesystem::path() : self.parent_path();
}

std::filesystem::path programDataFolder(const std::filesystem::path& executableFolder) {
    // An installed program's folder (one with its share folder beside it)
    // belongs to the system, not to whoever may write in it, root included.
    std::error_code ec;
    const bool installed =
        !executableFolder.empty() && std::filesystem::is_directory(installedDataFolder(executableFolder), ec);
    if (!executableFolder.empty() && !installed && ::access(executableFolder.c_str(), W_OK) == 0)
        return executableFolder;
    const std::filesystem::path user = userDataFolder();
    return user.empty() ? executableFolder : user;
}

// The build gives the path from the installed bin folder to the data folder.
#ifndef VANTOREL_INSTALLED_DATA
#define VANTOREL_INSTALLED_DATA "../share/vantorel"
#endif

std::filesystem::path installedDataFolder(const std::filesystem::path& executableFolder) {
    if (executableFolder.empty()) return {};
    return (executableFolder / VANTOREL_INSTALLED_DATA).lexically_normal();
}

std::filesystem::path findProgramFile(const std::filesystem::path& executableFolder, std::string_view name) {
    std::error_code ec;
    for (const std::filesystem::path& folder :
         {programDataFolder(executableFolder), executableFolder, installedDataFolder(executableFolder)}) {
        if (folder.empty()) continue;
        const std::filesystem::path candidate = folder / std::string(name);
        if (std::filesystem::is_regular_file(candidate, ec)) return candidate;
    }
    return {};
}

}  // namespace vantorel

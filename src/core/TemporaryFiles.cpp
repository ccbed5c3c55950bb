#include "core/TemporaryFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>

namespace vantorel {
namespace {

constexpr std::string_view kPrefix = ".vantorel-";

bool allDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// The number after the prefix, when `name` is a temporary file's name.
std::optional<pid_t> ownerOf(std::string_view name) {
    if (name.substr(0, kPrefix.size()) != kPrefix) return std::nullopt;
    name.remove_prefix(kPrefix.size());
    const std::size_t dash = name.find('-');
    if (dash == std::string_view::npos || !allDigits(name.substr(0, dash)) || dash > 9) return std::nullopt;
    const std::string_view number = name.substr(dash + 1, name.find('-', dash + 1) - dash - 1);
    if (!allDigits(number)) return std::nullopt;
    return static_cast<pid_t>(std::strtol(std::string(name.substr(0, dash)).c_str(), nullptr, 10));
}

// When the process started, in seconds since the epoch (rounded down), or
// nothing when the system does not say.
std::optional<double> processStart(pid_t pid) {
    static const std::optional<long> bootTime = []() -> std::optional<long> {
        std::unique_ptr<std::FILE, int (*)(std::FILE*)> stat(std::fopen("/proc/stat", "r"), &std::fclose);
        char line[256];
        long seconds = 0;
        while (stat && std::fgets(line, sizeof line, stat.get()))
            if (std::sscanf(line, "btime %ld", &seconds) == 1) return seconds;
        return std::nullopt;
    }();
    if (!bootTime) return std::nullopt;
    const std::string path = "/proc/" + std::to_string(pid) + "/stat";
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "r"), &std::fclose);
    if (!file) return std::nullopt;
    char buffer[1024];
    const std::size_t n = std::fread(buffer, 1, sizeof buffer - 1, file.get());
    buffer[n] = '\0';
    const char* fields = std::strrchr(buffer, ')');  // the command name may hold anything
    if (!fields) return std::nullopt;
    unsigned long long ticks = 0;
    // The start time is the 20th field after the command name.
    if (std::sscanf(fields + 1, " %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %*s %llu",
                    &ticks) != 1)
        return std::nullopt;
    return static_cast<double>(*bootTime) + static_cast<double>(ticks) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

// True when the process that wrote the temporary file is gone: no process
// has its number, or the one that has it started after the file was last
// written (the number was used again).
bool ownerIsGone(pid_t pid, const struct stat& file) {
    if (::kill(pid, 0) != 0 && errno == ESRCH) return true;
    const std::optional<double> started = processStart(pid);
    const double written = static_cast<double>(file.st_mtim.tv_sec) + file.st_mtim.tv_nsec * 1e-9;
    return started && *started > written + 1.0;  // the boot time is whole seconds
}

void removeStale(const std::string& folder) {
    DIR* dir = ::opendir(folder.empty() ? "." : folder.c_str());
    if (!dir) return;
    const pid_t self = ::getpid();
    while (const dirent* entry = ::readdir(dir)) {
        const std::optional<pid_t> owner = ownerOf(entry->d_name);
        if (!owner || *owner == self) continue;
        struct stat st {};
        if (::fstatat(::dirfd(dir), entry->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(st.st_mode)) continue;
        if (ownerIsGone(*owner, st)) ::unlinkat(::dirfd(dir), entry->d_name, 0);
    }
    ::closedir(dir);
}

}  // namespace

std::string TemporaryFiles::shortNameFor(pid_t pid, unsigned long number) {
    return std::string(kPrefix) + std::to_string(pid) + "-" + std::to_string(number);
}

std::string TemporaryFiles::nameFor(std::string_view fileName, pid_t pid, unsigned long number) {
    std::string name = shortNameFor(pid, number);
    if (name.size() + 1 + fileName.size() <= NAME_MAX) {
        name += '-';
        name += fileName;
    }
    return name;
}

bool TemporaryFiles::isTemporaryName(std::string_view name) noexcept {
    return ownerOf(name).has_value();
}

TemporaryFiles::FolderFacts TemporaryFiles::prepareFolder(const std::string& folder) {
    struct Entry {
        std::once_flag once;
        FolderFacts facts;
    };
    static std::mutex mutex;
    static std::unordered_map<std::string, std::unique_ptr<Entry>> folders;
    Entry* entry;
    {
        std::lock_guard lock(mutex);
        auto& slot = folders[folder];
        if (!slot) slot = std::make_unique<Entry>();
        entry = slot.get();
    }
    std::call_once(entry->once, [&] {
        const char* path = folder.empty() ? "." : folder.c_str();
        entry->facts.hasDefaultAcl = ::getxattr(path, "system.posix_acl_default", nullptr, 0) > 0;
        removeStale(folder);
    });
    return entry->facts;
}

}  // namespace vantorel

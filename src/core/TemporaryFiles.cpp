#include "core/TemporaryFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <cstdint>
#include <map>
#include <tuple>

namespace vantorel {
namespace {

constexpr std::string_view kPrefix = ".vantorel-";

bool allDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// The process number of a temporary file's name, when `name` has exactly
// the form ".vantorel-<process>-<number>".
std::optional<pid_t> ownerOf(std::string_view name) {
    if (name.substr(0, kPrefix.size()) != kPrefix) return std::nullopt;
    name.remove_prefix(kPrefix.size());
    const std::size_t dash = name.find('-');
    if (dash == std::string_view::npos || dash > 9 || !allDigits(name.substr(0, dash))) return std::nullopt;
    const std::string_view number = name.substr(dash + 1);
    if (!allDigits(number) || number.size() > 20) return std::nullopt;
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

void removeStale(int folder) {
    const int fd = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    DIR* dir = ::fdopendir(fd);
    if (!dir) {
        ::close(fd);
        return;
    }
    const pid_t self = ::getpid();
    const uid_t user = ::geteuid();
    while (const dirent* entry = ::readdir(dir)) {
        const std::optional<pid_t> owner = ownerOf(entry->d_name);
        if (!owner || *owner == self) continue;
        struct stat st {};
        if (::fstatat(::dirfd(dir), entry->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(st.st_mode) ||
            st.st_nlink != 1 || st.st_uid != user)
            continue;
        if (ownerIsGone(*owner, st)) ::unlinkat(::dirfd(dir), entry->d_name, 0);
    }
    ::closedir(dir);
}

}  // namespace

std::string TemporaryFiles::nameFor(pid_t pid, unsigned long number) {
    return std::string(kPrefix) + std::to_string(pid) + "-" + std::to_string(number);
}

std::string TemporaryFiles::newName() {
    static std::atomic<unsigned long> counter{0};
    return nameFor(::getpid(), counter++);
}

bool TemporaryFiles::isTemporaryName(std::string_view name) noexcept {
    return ownerOf(name).has_value();
}

TemporaryFiles::FolderFacts TemporaryFiles::prepareFolder(int folder) {
    struct Entry {
        std::once_flag once;
        FolderFacts facts;
    };
    // A folder is known by its file and when it was made: a folder made
    // later in the place (and with the inode) of a removed one is another.
    struct statx st {};
    if (::statx(folder, "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME, &st) != 0)
        throw std::system_error(errno, std::generic_category());
    const bool born = (st.stx_mask & STATX_BTIME) != 0;
    using Key = std::tuple<std::uint32_t, std::uint32_t, std::uint64_t, std::int64_t, std::uint32_t>;
    const Key key{st.stx_dev_major, st.stx_dev_minor, st.stx_ino, born ? st.stx_btime.tv_sec : 0,
                  born ? st.stx_btime.tv_nsec : 0};
    static std::mutex mutex;
    static std::map<Key, std::unique_ptr<Entry>> folders;
    Entry* entry;
    {
        std::lock_guard lock(mutex);
        auto& slot = folders[key];
        if (!slot) slot = std::make_unique<Entry>();
        entry = slot.get();
    }
    std::call_once(entry->once, [&] {
        entry->facts.hasDefaultAcl = ::fgetxattr(folder, "system.posix_acl_default", nullptr, 0) > 0;
        removeStale(folder);
    });
    FolderFacts facts = entry->facts;
    facts.device = makedev(st.stx_dev_major, st.stx_dev_minor);
    facts.inode = static_cast<ino_t>(st.stx_ino);
    return facts;
}

}  // namespace vantorel

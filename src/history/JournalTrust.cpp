#include "history/JournalTrust.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <utility>
#include <vector>

#include "core/FileDescriptor.h"
#include "files/FileFunctions.h"
#include "files/FileListBuilder.h"

namespace vantorel::history {
namespace {

constexpr int kMostLinks = 40;  // as the system allows in one path

bool writableByOthers(mode_t mode) { return (mode & (S_IWGRP | S_IWOTH)) != 0; }

Distrust unreadable(std::string path, int error, bool above = false) {
    Distrust d{std::move(path), Distrust::Reason::Unreadable, above};
    d.error = error;
    return d;
}

Distrust because(std::string path, Distrust::Reason reason, const struct stat& st, bool above = false) {
    return Distrust{std::move(path), reason, above, st.st_uid, st.st_mode & 07777, 0};
}

// A folder passed on the way to a journal's folder, or a link there.
std::optional<Distrust> checkAbove(const std::string& path, const struct stat& st) {
    if (st.st_uid != ::geteuid() && st.st_uid != 0) return because(path, Distrust::Reason::Owner, st, true);
    if (S_ISDIR(st.st_mode) && writableByOthers(st.st_mode) && !(st.st_mode & S_ISVTX))
        return because(path, Distrust::Reason::WritableByOthers, st, true);
    return std::nullopt;
}

std::optional<Distrust> checkOwn(const std::string& path, const struct stat& st, bool folder) {
    if (S_ISLNK(st.st_mode)) return because(path, Distrust::Reason::Link, st);
    if (folder ? !S_ISDIR(st.st_mode) : !S_ISREG(st.st_mode))
        return because(path, folder ? Distrust::Reason::NotFolder : Distrust::Reason::NotFile, st);
    if (st.st_uid != ::geteuid()) return because(path, Distrust::Reason::Owner, st);
    if (writableByOthers(st.st_mode)) return because(path, Distrust::Reason::WritableByOthers, st);
    return std::nullopt;
}

std::optional<Distrust> checkOwnEntry(const std::string& path, bool folder, bool mayBeMissing) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0) {
        if (errno == ENOENT && mayBeMissing) return std::nullopt;
        return unreadable(path, errno);
    }
    return checkOwn(path, st, folder);
}

std::string parentOf(const std::string& resolved) {
    const std::size_t slash = resolved.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : resolved.substr(0, slash);
}

std::string join(const std::string& folder, const std::string& name) {
    return folder == "/" ? "/" + name : folder + "/" + name;
}

// The names of a path, last first (to be taken from the back).
void pushNames(std::vector<std::pair<std::string, bool>>& names, const std::string& path, bool last) {
    std::vector<std::string> split;
    for (std::size_t at = 0; at <= path.size();) {
        std::size_t slash = path.find('/', at);
        if (slash == std::string::npos) slash = path.size();
        if (slash > at) split.push_back(path.substr(at, slash - at));
        at = slash + 1;
    }
    for (auto name = split.rbegin(); name != split.rend(); ++name) {
        names.emplace_back(*name, last);
        last = false;  // only the given path's own last name is the journal's folder
    }
}

struct Walked {
    std::optional<Distrust> distrust;
    std::string resolved;  // the folder, links above it resolved
};

Walked stop(Distrust distrust) {
    Walked walked;
    walked.distrust = std::move(distrust);
    return walked;
}

// Resolves `folder` one name at a time, as the system does, checking every
// folder and link passed on the way; the last name is never followed.
Walked walk(const std::string& folder, bool make) {
    Walked walked;
    std::string absolute = folder;
    if (absolute.empty() || absolute.front() != '/') {
        std::error_code ec;
        absolute = std::filesystem::absolute(folder, ec).string();
        if (ec) return stop(unreadable(folder, ec.value()));
    }
    std::vector<std::pair<std::string, bool>> names;  // a stack: the next name at the back
    pushNames(names, absolute, true);
    std::string at = "/";
    struct stat st {};
    if (::lstat("/", &st) != 0) return stop(unreadable("/", errno, true));
    if (auto distrust = checkAbove("/", st)) return stop(std::move(*distrust));
    for (int links = 0; !names.empty();) {
        const auto [name, last] = names.back();
        names.pop_back();
        if (name == ".") continue;
        if (name == "..") {
            at = parentOf(at);  // checked already on the way down
            continue;
        }
        const std::string next = join(at, name);
        if (::lstat(next.c_str(), &st) != 0) {
            if (errno != ENOENT) return stop(unreadable(next, errno, !last));
            if (!make) return walked;  // nothing there to distrust
            if (::mkdir(next.c_str(), 0700) != 0 && errno != EEXIST) return stop(unreadable(next, errno, !last));
            if (::lstat(next.c_str(), &st) != 0) return stop(unreadable(next, errno, !last));
        }
        if (S_ISLNK(st.st_mode) && !last) {
            if (auto distrust = checkAbove(next, st)) return stop(std::move(*distrust));
            if (++links > kMostLinks) return stop(unreadable(next, ELOOP, true));
            char target[PATH_MAX];
            const ssize_t n = ::readlink(next.c_str(), target, sizeof target);
            if (n < 0 || n == sizeof target) return stop(unreadable(next, n < 0 ? errno : ENAMETOOLONG, true));
            const std::string to(target, static_cast<std::size_t>(n));
            if (!to.empty() && to.front() == '/') at = "/";
            pushNames(names, to, false);
            continue;
        }
        if (last) {
            walked.resolved = next;
            walked.distrust = checkOwn(next, st, true);
            return walked;
        }
        if (!S_ISDIR(st.st_mode)) return stop(unreadable(next, ENOTDIR, true));
        if (auto distrust = checkAbove(next, st)) return stop(std::move(*distrust));
        at = next;
    }
    // The folder given is "/" or ends in "." or "..": `at` is the folder itself, resolved.
    walked.resolved = at;
    if (::lstat(at.c_str(), &st) != 0) return stop(unreadable(at, errno));
    walked.distrust = checkOwn(at, st, true);
    return walked;
}

constexpr const char kMarkerText[] =
    "This folder holds an undo journal of Vantorel. No run of Vantorel enters it.\n";

}  // namespace

std::string describe(const Distrust& d) {
    char mode[16];
    std::snprintf(mode, sizeof mode, "%04o", static_cast<unsigned>(d.mode));
    switch (d.reason) {
        case Distrust::Reason::Unreadable: return d.path + ": " + systemErrorText(d.error);
        case Distrust::Reason::Link: return d.path + " is a symbolic link";
        case Distrust::Reason::NotFolder: return d.path + " is not a folder";
        case Distrust::Reason::NotFile: return d.path + " is not a regular file";
        case Distrust::Reason::Owner:
            return d.path + " belongs to user " + std::to_string(d.owner) + ", not to user " +
                   std::to_string(::geteuid()) + (d.above ? " or root" : "");
        case Distrust::Reason::WritableByOthers:
            return d.path + " can be written by other users (mode " + mode + (d.above ? ", not sticky)" : ")");
    }
    return d.path;
}

UntrustedJournal::UntrustedJournal(Distrust distrust)
    : std::system_error(EPERM, std::generic_category(), describe(distrust)), distrust_(std::move(distrust)) {}

std::optional<Distrust> checkJournalFolder(const std::string& folder, bool make) {
    return walk(folder, make).distrust;
}

std::optional<Distrust> makeJournalFolder(const std::string& folder) {
    Walked walked = walk(folder, true);
    if (walked.distrust) return walked.distrust;
    // Opened as checked: a folder put in its place since is not this one.
    const FileDescriptor fd(::open(walked.resolved.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat st {};
    if (!fd || ::fstat(fd.get(), &st) != 0) return unreadable(walked.resolved, errno);
    if (auto distrust = checkOwn(walked.resolved, st, true)) return distrust;
    if ((st.st_mode & 077) != 0 && ::fchmod(fd.get(), 0700) != 0) return unreadable(walked.resolved, errno);
    const std::string marker(kUndoJournalMarker);
    const FileDescriptor tag(
        ::openat(fd.get(), marker.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (tag) {
        if (::write(tag.get(), kMarkerText, sizeof kMarkerText - 1) < 0) {
            // The name alone marks the folder.
        }
    } else if (errno != EEXIST) {
        return unreadable(walked.resolved + "/" + marker, errno);
    }
    return std::nullopt;
}

std::optional<Distrust> checkOwnFolder(const std::string& path, bool mayBeMissing) {
    return checkOwnEntry(path, true, mayBeMissing);
}

std::optional<Distrust> checkOwnFile(const std::string& path, bool mayBeMissing) {
    return checkOwnEntry(path, false, mayBeMissing);
}

}  // namespace vantorel::history

#include "files/FileListBuilder.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <cstdint>
#include <unordered_set>

#include "core/TemporaryFiles.h"
#include "files/FileFunctions.h"
#include "files/Wildcard.h"

namespace vantorel {

const char* const kSelectFilterMessage = "Please select a file filter.";

void FileList::addPath(const std::string& fullPath) {
    folderIndex.push_back(static_cast<std::uint32_t>(folders.size()));
    folders.push_back(FolderOf(fullPath));
    names.push_back(FileNameOf(fullPath));
}

bool isVersionControlFolder(std::string_view name) noexcept {
    for (const std::string_view folder : {".git", ".hg", ".svn", ".bzr", "_darcs", "CVS"})
        if (name == folder) return true;
    return false;
}

bool isUndoFolderName(std::string_view name) noexcept { return name.starts_with(kUndoFolderPrefix); }

bool isInUndoFolder(const std::string& folder) {
    std::string at = realFolderOf(folder);
    if (at.size() > 1) at.pop_back();  // no trailing separator but for "/"
    const std::string marker(kUndoJournalMarker);
    for (struct stat st {};;) {
        if (::lstat((withTrailingSeparator(at) + marker).c_str(), &st) == 0) return true;
        const std::size_t slash = at.rfind(kPathSeparator);
        if (slash == std::string::npos || at.size() <= 1) return false;
        if (isUndoFolderName(std::string_view(at).substr(slash + 1))) return true;
        at = slash == 0 ? "/" : at.substr(0, slash);
    }
}

bool UndoFolders::holds(const std::string& file) {
    std::unique_ptr<char, decltype(&std::free)> real(::realpath(file.c_str(), nullptr), &std::free);
    std::string folder = FolderOf(real ? std::string(real.get()) : file);
    if (folder.empty()) folder = ".";
    const auto [known, added] = known_.try_emplace(folder, false);
    if (added) known->second = isInUndoFolder(folder);
    return known->second;
}

namespace {

enum class EntryKind { File, Folder, Other };

struct Entry {
    std::string name;
    EntryKind kind;
    bool link = false;
};

EntryKind kindOf(const std::string& folder, const dirent* entry, bool& link) {
    link = entry->d_type == DT_LNK;
    switch (entry->d_type) {
        case DT_REG: return EntryKind::File;
        case DT_DIR: return EntryKind::Folder;
        case DT_LNK: {
            // A link to a file is listed; a link to a folder is not entered.
            struct stat st {};
            const std::string path = folder + entry->d_name;
            if (::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode)) return EntryKind::File;
            return EntryKind::Other;
        }
        case DT_UNKNOWN: {
            struct stat st {};
            const std::string path = folder + entry->d_name;
            if (::lstat(path.c_str(), &st) != 0) return EntryKind::Other;
            if (S_ISDIR(st.st_mode)) return EntryKind::Folder;
            if (S_ISREG(st.st_mode)) return EntryKind::File;
            link = S_ISLNK(st.st_mode);
            if (link && ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode)) return EntryKind::File;
            return EntryKind::Other;
        }
        default: return EntryKind::Other;
    }
}

// A folder as the system knows it, whatever name reached it.
struct FolderId {
    dev_t device;
    ino_t inode;
    bool operator==(const FolderId&) const = default;
};

struct FolderIdHash {
    std::size_t operator()(const FolderId& id) const noexcept {
        return std::hash<std::uint64_t>()(static_cast<std::uint64_t>(id.inode) * 31 +
                                          static_cast<std::uint64_t>(id.device));
    }
};

using VisitedFolders = std::unordered_set<FolderId, FolderIdHash>;

// The folder's entries in name order; nothing when it cannot be read, was
// read before under another name, or is an undo journal's.
std::vector<Entry> readFolder(const std::string& folder, VisitedFolders& visited) {
    std::vector<Entry> entries;
    DIR* dir = ::opendir(folder.c_str());
    if (!dir) return entries;
    struct stat st {};
    if (::fstat(::dirfd(dir), &st) != 0 || !visited.insert(FolderId{st.st_dev, st.st_ino}).second) {
        ::closedir(dir);
        return entries;
    }
    while (const dirent* entry = ::readdir(dir)) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") continue;
        if (name == kUndoJournalMarker) {
            entries.clear();
            break;
        }
        bool link = false;
        const EntryKind kind = kindOf(folder, entry, link);
        entries.push_back({std::string(name), kind, link});
    }
    ::closedir(dir);
    std::sort(entries.begin(), entries.end(),
              [](const Entry& a, const Entry& b) { return a.name < b.name; });
    return entries;
}

}  // namespace

FileList BuildFileList(const std::string& startFolder, const std::string& filter,
                       bool includeSubfolders, const std::atomic<bool>& stopRequested,
                       const FileListCallbacks& callbacks, bool skipVersionControl,
                       const std::vector<std::string>& ownFolders) {
    FileList list;
    const std::vector<std::string> patterns = splitFilter(filter);
    if (patterns.empty()) {
        if (callbacks.information) callbacks.information(kSelectFilterMessage);
        return list;
    }
    list.folders.push_back(withTrailingSeparator(startFolder));
    if (isInUndoFolder(startFolder)) return list;
    UndoFolders linkedInto;  // a linked file is not listed where its link leads into a journal's folder
    VisitedFolders visited;
    for (const std::string& own : ownFolders)  // as though seen already
        if (struct stat st {}; ::stat(own.c_str(), &st) == 0) visited.insert(FolderId{st.st_dev, st.st_ino});
    // Breadth-first: folders appended during the walk are visited in turn.
    for (std::size_t f = 0; f < list.folders.size(); ++f) {
        const std::string folder = list.folders[f];
        if (callbacks.status) callbacks.status("Building File List: " + folder);
        for (const Entry& entry : readFolder(folder, visited)) {
            if (entry.kind == EntryKind::Folder) {
                if (includeSubfolders && !(skipVersionControl && isVersionControlFolder(entry.name)) &&
                    !isUndoFolderName(entry.name))
                    list.folders.push_back(folder + entry.name + kPathSeparator);
            } else if (entry.kind == EntryKind::File && matchesAny(patterns, entry.name) &&
                       !TemporaryFiles::isTemporaryName(entry.name) &&
                       !(entry.link && linkedInto.holds(folder + entry.name))) {
                list.names.push_back(entry.name);
                list.folderIndex.push_back(static_cast<std::uint32_t>(f));
            }
            // A stop ends this folder's enumeration after the entry just taken;
            // the remaining folders are still visited, as the walk has queued them.
            if (stopRequested.load(std::memory_order_relaxed)) break;
        }
    }
    return list;
}

}  // namespace vantorel

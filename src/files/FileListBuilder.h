#pragma once
// Builds the list of files that a run searches: every file under the start
// folder (and, if wanted, all its subfolders) whose name matches one of the
// filter's wildcard patterns. The walk is breadth-first; entries of one
// folder are taken in name order. Folders reached through symbolic links are
// not entered (no loops); linked files are listed. Special files (pipes,
// devices, sockets) and the temporary files of writes in progress are never
// listed. Folders that a version-control system keeps its own data in are not
// entered unless `skipVersionControl` is false. Nor are the folders in which
// the program keeps its own things, anyone's undo journal: a folder holding
// an entry named ".vantorel-undo-journal" (the journal marks its folder so;
// the walk reads every folder's entries anyway, and seeing the name costs
// nothing more), those named ".vantorel-undo-..." and those given in
// `ownFolders`, whatever names reach them. A start folder in such a folder
// lists nothing.

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "files/FileList.h"

namespace vantorel {

struct FileListCallbacks {
    // "Building File List: " + folder, for each folder as the walk reaches it.
    std::function<void(const std::string& status)> status;
    // Shown when the filter holds no pattern at all.
    std::function<void(const std::string& message)> information;
};

// "Please select a file filter."
extern const char* const kSelectFilterMessage;

// True for ".git", ".hg", ".svn", ".bzr", "_darcs" and "CVS".
bool isVersionControlFolder(std::string_view name) noexcept;

// True for the names of the folders that hold the undo journal's kept contents.
bool isUndoFolderName(std::string_view name) noexcept;
inline constexpr std::string_view kUndoFolderPrefix = ".vantorel-undo-";
// The name of the file that marks an undo journal's folder.
inline constexpr std::string_view kUndoJournalMarker = ".vantorel-undo-journal";

// True when the folder, or one above it (links resolved), is an undo
// journal's: it holds the marker or has the name of kept contents.
bool isInUndoFolder(const std::string& folder);

// Whether files, wherever their links lead, are in an undo journal's folder;
// each folder is looked at once.
class UndoFolders {
public:
    bool holds(const std::string& file);

private:
    std::unordered_map<std::string, bool> known_;
};

// The start folder itself is searched whatever its name, unless it is in an
// undo journal's folder.
FileList BuildFileList(const std::string& startFolder, const std::string& filter,
                       bool includeSubfolders, const std::atomic<bool>& stopRequested,
                       const FileListCallbacks& callbacks = {}, bool skipVersionControl = true,
                       const std::vector<std::string>& ownFolders = {});

}  // namespace vantorel

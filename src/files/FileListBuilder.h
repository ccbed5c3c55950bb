#pragma once
// Builds the list of files that a run searches: every file under the start
// folder (and, if wanted, all its subfolders) whose name matches one of the
// filter's wildcard patterns. The walk is breadth-first; entries of one
// folder are taken in name order. Folders reached through symbolic links are
// not entered (no loops); linked files are listed. Special files (pipes,
// devices, sockets) and the temporary files of writes in progress are never
// listed. Folders that a version-control system keeps its own data in are not
// entered unless `skipVersionControl` is false. Nor are the folders in which
// the program keeps its own things: those named ".vantorel-undo-..." and
// those given in `ownFolders`, whatever names reach them.

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
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

// The start folder itself is searched whatever its name.
FileList BuildFileList(const std::string& startFolder, const std::string& filter,
                       bool includeSubfolders, const std::atomic<bool>& stopRequested,
                       const FileListCallbacks& callbacks = {}, bool skipVersionControl = true,
                       const std::vector<std::string>& ownFolders = {});

}  // namespace vantorel

#pragma once
// A path dropped on the main window becomes its start folder.

#include <string>

namespace vantorel {

// A folder is taken as it is; a file (or anything else that exists) gives
// the folder it is in. "" for a path that does not exist.
std::string startFolderForDrop(const std::string& path);

}  // namespace vantorel

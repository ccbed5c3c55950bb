#pragma once
// The name under which `patch -p0`, run in the start folder, reaches the file
// that a Replace would write, or why it cannot.

#include <string>

namespace vantorel::cli {

struct PatchName {
    std::string name;     // from the start folder; empty when there is none
    std::string problem;  // why there is none
};

// The file's real place (links resolved, as a Replace writes through them)
// inside `realStartFolder` (links resolved, ending in the separator).
// GNU patch writes the new text beside the file as NAME.oXXXXXX first, so a
// name with fewer than 8 bytes to spare below the folder's longest name
// cannot be patched.
PatchName patchNameOf(const std::string& path, const std::string& realStartFolder);

}  // namespace vantorel::cli

#pragma once
// Where the writing pass of a Replace would write a file with matches.

#include <string>

namespace vantorel {

// Where a file with matches would be written.
struct WriteTarget {
    std::string path;      // the file replaced: the listed one, or where its link leads
    std::string relative;  // the same below the root; with no root, the whole path
    bool link = false;
    bool outside = false;  // below no root at all
    // The backup goes beside the listed file, named after it.
    std::string backupPath;
    std::string backupRelative;
    bool backupOutside = false;
};

}  // namespace vantorel

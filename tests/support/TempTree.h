#pragma once
// A temporary folder tree for tests, removed with everything in it.

#include <map>
#include <string>
#include <vector>

namespace vantorel::test {

class TempTree {
public:
    TempTree();
    // Under `base` rather than $TMPDIR (for example a RAM file system).
    explicit TempTree(const std::string& base);
    ~TempTree();
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;

    // The root, without a trailing separator.
    const std::string& root() const { return root_; }
    // root + "/" + relative
    std::string path(const std::string& relative) const;
    // Writes a file (creating its folders); returns its full path.
    std::string write(const std::string& relative, const std::string& bytes, int mode = 0644) const;
    std::string mkdir(const std::string& relative) const;
    std::string read(const std::string& relative) const;
    bool exists(const std::string& relative) const;
    int mode(const std::string& relative) const;
    // The names in a folder of the tree, sorted.
    std::vector<std::string> names(const std::string& relative = "") const;
    // Makes a folder refuse new files, to root as well where the file system
    // has an immutable flag; false when that cannot be done here.
    bool refuseNewFiles(const std::string& relative) const;
    // Undoes refuseNewFiles().
    void allowNewFiles(const std::string& relative) const;
    // Every file and link under the root (relative path) with its mode and
    // bytes (a link's target), to compare whole trees.
    std::map<std::string, std::string> snapshot() const;

private:
    std::string root_;
    mutable std::vector<std::string> locked_;
};

// A file's bytes, wherever it is; empty when it cannot be read.
std::string fileText(const std::string& path);

}  // namespace vantorel::test

#pragma once
// Folders and files made another user's, for the tests of what the program
// refuses to trust (they need root: skipped otherwise).

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace vantorel::test {

// The user that the tests give other users' folders to.
inline constexpr uid_t kOtherUser = 5001;

// Gives `path` and everything under it to `uid` (links themselves, not where
// they lead); false when that cannot be done.
inline bool giveTo(const std::string& path, uid_t uid = kOtherUser) {
    if (::lchown(path.c_str(), uid, uid) != 0) return false;
    std::error_code ec;
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) return true;
    for (auto it = std::filesystem::recursive_directory_iterator(path, ec);
         !ec && it != std::filesystem::recursive_directory_iterator(); it.increment(ec))
        if (::lchown(it->path().c_str(), uid, uid) != 0) return false;
    return !ec;
}

}  // namespace vantorel::test

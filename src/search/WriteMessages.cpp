#include "search/WriteMessages.h"

#include <fcntl.h>

#include <cerrno>

#include "core/TreeRoot.h"

namespace vantorel {

std::string writeErrorMessage(const std::string& path, const std::string& error) {
    return "Error writing " + path + "\r\n" + error;
}

// The open folder where the file is, reached as a write reaches it.
FileDescriptor openWriteFolder(const TreeRoot* root, const std::string& relative) {
    if (root) return root->openFolder(TreeRoot::folderOf(relative));
    const std::string folder = FolderOf(relative);
    FileDescriptor fd(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!fd) throw std::system_error(errno, std::generic_category(), folder);
    return fd;
}

// The refusal of a file that is no longer where it was, or no longer the
// file that was read.
WriteOutcome changedRefusal(const std::string& path, const WriteTarget& target, int error,
                            std::vector<Message>& messages) {
    // A link where a folder or the file was: the way has changed under us.
    const bool link = error == ELOOP || error == EXDEV || error == ENOTDIR;
    messages.push_back(fileMessage(path + (link ? kNowThroughLink : kChangedBeforeWriting), MessageIcon::Warning));
    return refusal(WriteStatus::ChangedMeanwhile, target.path);
}

}  // namespace vantorel

#include "support/SmallDisk.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <string>

namespace vantorel::test {
namespace {

constexpr const char* kFiller = ".filler";

}  // namespace

SmallDisk::SmallDisk(std::uint64_t bytes) : tree_(std::make_unique<TempTree>()) {
    const std::string options = "size=" + std::to_string(bytes) + ",mode=0755";
    mounted_ = ::geteuid() == 0 && ::mount("tmpfs", tree_->root().c_str(), "tmpfs", 0, options.c_str()) == 0;
}

SmallDisk::~SmallDisk() {
    if (mounted_) ::umount2(tree_->root().c_str(), MNT_DETACH);
}

std::uint64_t SmallDisk::freeBytes() const {
    struct statvfs fs {};
    if (::statvfs(tree_->root().c_str(), &fs) != 0) return 0;
    return static_cast<std::uint64_t>(fs.f_bavail) * fs.f_frsize;
}

void SmallDisk::fill(std::uint64_t leave) const {
    const std::string path = tree_->root() + "/" + kFiller;
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (fd < 0) return;
    const std::string block(4096, 'f');
    while (freeBytes() > leave) {
        const std::uint64_t room = freeBytes() - leave;
        if (::write(fd, block.data(), room < block.size() ? room : block.size()) <= 0) break;
    }
    ::close(fd);
}

void SmallDisk::empty() const { ::unlink((tree_->root() + "/" + kFiller).c_str()); }

}  // namespace vantorel::test

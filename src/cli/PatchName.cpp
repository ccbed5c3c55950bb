#include "cli/PatchName.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "files/FileFunctions.h"

namespace vantorel::cli {
namespace {

constexpr std::size_t kPatchTemporarySuffix = 8;  // ".oXXXXXX"

}  // namespace

PatchName patchNameOf(const std::string& path, const std::string& realStartFolder) {
    std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    if (!real) return {{}, systemErrorText(errno)};
    const std::string_view full = real.get();
    if (!full.starts_with(realStartFolder))
        return {{}, "it lies outside the start folder " + realStartFolder};
    const std::string folder = FolderOf(full);
    const long longest = ::pathconf(folder.c_str(), _PC_NAME_MAX);
    const std::size_t room = (longest > 0 ? static_cast<std::size_t>(longest) : NAME_MAX) - kPatchTemporarySuffix;
    if (full.size() - folder.size() > room)
        return {{}, "patch cannot write beside a name of more than " + std::to_string(room) + " bytes"};
    return {std::string(full.substr(realStartFolder.size())), {}};
}

}  // namespace vantorel::cli

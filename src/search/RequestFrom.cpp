#include "search/RequestFrom.h"

#include <filesystem>
#include <system_error>

namespace vantorel {
namespace {

std::string fromCurrentFolder(std::string folder) {
    if (folder.empty() || std::filesystem::path(folder).is_absolute()) return folder;
    std::error_code ec;
    const std::filesystem::path current = std::filesystem::current_path(ec);
    return ec ? folder : (current / folder).string();
}

}  // namespace

RunRequest requestFrom(RunRequest request, JobSource jobs, std::optional<std::vector<std::string>> markedFiles) {
    request.jobs = std::move(jobs.jobs);
    request.batch = jobs.batch;
    request.startFolder = fromCurrentFolder(std::move(request.startFolder));
    request.markedOnly = markedFiles.has_value();
    request.markedFiles = markedFiles ? std::move(*markedFiles) : std::vector<std::string>();
    return request;
}

}  // namespace vantorel

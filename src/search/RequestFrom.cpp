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

RunRequest requestFrom(RunInputs inputs) {
    RunRequest request;
    request.kind = inputs.kind;
    request.jobs = std::move(inputs.jobs.jobs);
    request.batch = inputs.jobs.batch;
    request.startFolder = fromCurrentFolder(std::move(inputs.folder));
    request.filter = std::move(inputs.filter);
    request.regularExpression = inputs.regularExpression;
    request.ignoreCase = inputs.ignoreCase;
    request.wholeWords = inputs.wholeWords;
    request.scanSubfolders = inputs.scanSubfolders;
    request.skipVersionControl = inputs.skipVersionControl;
    request.makeBackups = inputs.makeBackups;
    request.showAll = inputs.showAll;
    request.markedOnly = inputs.markedFiles.has_value();
    if (inputs.markedFiles) request.markedFiles = std::move(*inputs.markedFiles);
    request.threads = inputs.threads;
    request.dryRun = inputs.dryRun;
    request.changes = inputs.changes;
    return request;
}

}  // namespace vantorel

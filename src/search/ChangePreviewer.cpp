#include "search/ChangePreviewer.h"

#include <system_error>

#include "files/FileFunctions.h"
#include "files/FileText.h"
#include "regex/PatternConstruction.h"

namespace vantorel {

ChangePreviewer::ChangePreviewer(const RunRequest& request) {
    const PatternOptions options{request.regularExpression, request.wholeWords};
    for (const FindReplaceJob& typed : request.jobs) {
        const JobPattern job = buildJobPattern(typed.findText, typed.replaceText, options);
        jobs_.emplace_back(job.findPattern, job.replaceText, request.ignoreCase);
    }
    settings_.makeBackups = request.makeBackups;
    try {
        root_.emplace(TreeRoot::open(request.startFolder));
        settings_.root = &*root_;
        settings_.walked = !request.markedOnly;
    } catch (const std::system_error&) {
        // A folder that cannot be opened: the Replace will say so.
    }
}

ChangePreviewer::Result ChangePreviewer::preview(const std::string& path, ChangeLines lines) const {
    Result result;
    FileText::Result read = FileText::read(path);
    if (read.status != FileText::Status::Ok) {
        result.error = read.status == FileText::Status::Vanished ? "" : read.error;
        return result;
    }
    result.read = true;
    result.changes = previewChanges(path, read.text, jobs_, settings_, lines);
    return result;
}

}  // namespace vantorel

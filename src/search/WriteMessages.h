#pragma once
// The words in which the writing pass says why a file was left as it was.

#include <string>
#include <system_error>
#include <vector>

#include "core/FileDescriptor.h"
#include "core/MessageHost.h"
#include "files/FileFunctions.h"
#include "core/RunTypes.h"
#include "search/WriteBack.h"

namespace vantorel {

class TreeRoot;

inline constexpr const char* kChangedBeforeWriting =
    " was changed by another program while it was being processed; it was left as it is.";
inline constexpr const char* kNowThroughLink =
    " can no longer be reached without following a link (a folder on its way was moved or replaced); it was not "
    "changed.";
inline constexpr const char* kLinkLeadsOutside = " is a link to a file outside the start folder; it was not changed.";
inline constexpr const char* kOutside = " is outside the start folder; it was not changed.";
inline constexpr const char* kNotExactText =
    " is UTF-16 text with code units that are not characters; it was not changed.";
inline constexpr const char* kForeignOwner =
    " belongs to another user; replacing it would make it yours, so it was not changed.";
inline constexpr const char* kForeignGroup =
    " belongs to a group you are not in; replacing it would change its group, so it was not changed.";
inline const std::string kBackupFailed = "Error creating .bak file: ";

inline Message fileMessage(std::string text, MessageIcon icon) {
    return Message{std::move(text), kProgramTitle, icon, MessageKind::FileError};
}

inline WriteOutcome refusal(WriteStatus status, const std::string& path) {
    WriteOutcome outcome;
    outcome.status = status;
    outcome.path = path;
    return outcome;
}

// "Error writing " + path, CR LF, why.
std::string writeErrorMessage(const std::string& path, const std::string& error);

// The open folder where a file is: below `root` (reached without following
// links) when there is one, else by its path. Throws std::system_error.
FileDescriptor openWriteFolder(const TreeRoot* root, const std::string& relative);

// The refusal of a file that is no longer where it was, or no longer the
// file that was read (the system's `error`, or 0).
WriteOutcome changedRefusal(const std::string& path, const WriteTarget& target, int error,
                            std::vector<Message>& messages);

inline WriteOutcome failure(const std::string& path, const std::system_error& error, std::vector<Message>& messages) {
    WriteOutcome outcome = refusal(WriteStatus::Failed, path);
    outcome.error = systemErrorText(error.code().value());
    messages.push_back(fileMessage(writeErrorMessage(path, outcome.error), MessageIcon::Warning));
    return outcome;
}

}  // namespace vantorel

#pragma once
// Reading the library and the batch jobs for a front end: the records, or
// nothing once the failure is said through a MessageHost. The window says
// what its boxes say; a terminal also names the file and the system's
// reason, so that the user can go and look.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/MessageHost.h"
#include "library/BatchJobFile.h"
#include "library/LibraryEntry.h"
#include "library/LibraryFile.h"

namespace vantorel {

enum class LoadDetail {
    Window,     // the window's box: the jobs list gives the reason, the library nothing more
    FileNamed   // the file (or the folder that could not be entered) and the reason
};

// "Error loading regular expression library.", with `detail` on the line below when given.
Message libraryNotLoaded(std::string_view detail = {});
// "Error loading batch jobs list: " followed by `detail`.
Message jobsNotLoaded(std::string_view detail);

std::optional<std::vector<LibraryEntry>> loadLibrary(const LibraryFile& file, MessageHost& messages,
                                                     LoadDetail detail = LoadDetail::Window);
std::optional<std::vector<std::string>> loadJobLines(const BatchJobFile& file, MessageHost& messages,
                                                     LoadDetail detail = LoadDetail::Window);

}  // namespace vantorel

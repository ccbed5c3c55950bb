#pragma once
// The messages the window shows about its own actions: opening pages, files,
// folders and programs, choosing a folder, the results list and the preview,
// saving text. Each text is written here once.

#include <string_view>

#include "core/MessageHost.h"

namespace vantorel {

// A page or document that no program could open.
Message unableToViewPage();
// "Open Containing Folder": the folder could not be shown, or another failure.
Message errorOpeningFolder();
Message errorOpeningFile();
// "Open with...": the chosen program, or the remembered one, did not start.
Message errorOpeningApplication();
Message errorOpeningApplication(std::string_view program);
Message errorDisplayingContextMenu();
Message errorSortingList();
Message errorSelectingFolder();
// A file whose preview cannot be built.
Message unableToShowFile();
// A file that could not be loaded (the tester's sample), and why.
Message errorLoadingFile(std::string_view reason);
// Text that could not be saved under `path`, and why.
Message fileNotSaved(std::string_view path, std::string_view reason);

}  // namespace vantorel

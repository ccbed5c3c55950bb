#include "core/FrontEndMessages.h"

#include <string>

namespace vantorel {
namespace {

Message notice(std::string text, MessageIcon icon = MessageIcon::None) {
    return Message{std::move(text), kProgramTitle, icon, MessageKind::Notice};
}

}  // namespace

Message unableToViewPage() { return notice("Unable to find/view page.", MessageIcon::Warning); }
Message errorOpeningFolder() { return notice("Error Opening Folder.", MessageIcon::Warning); }
Message errorOpeningFile() { return notice("Error opening File!", MessageIcon::Warning); }
Message errorOpeningApplication() { return notice("Error opening application.", MessageIcon::Warning); }

Message errorOpeningApplication(std::string_view program) {
    return notice("Error opening application " + std::string(program), MessageIcon::Warning);
}

Message errorDisplayingContextMenu() { return notice("Error displaying context menu."); }
Message errorSortingList() { return notice("Error sorting list"); }
Message errorSelectingFolder() { return notice("Error selecting folder."); }
Message unableToShowFile() { return notice("Unable to show file."); }

Message errorLoadingFile(std::string_view reason) {
    return Message{"Error Loading File\r\n" + std::string(reason), kProgramTitle, MessageIcon::Warning,
                   MessageKind::FileError};
}

Message fileNotSaved(std::string_view path, std::string_view reason) {
    return Message{std::string(path) + " could not be saved.\r\n" + std::string(reason), kProgramTitle,
                   MessageIcon::Warning, MessageKind::FileError};
}

}  // namespace vantorel

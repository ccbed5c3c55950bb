#pragma once
// "Export Match Details...": the preview as the user sees it, saved as rich
// text (RTF) or plain text, and the messages that tell the user how it went.
// The window only asks for the name and hands over the preview's runs.

#include <functional>
#include <string>
#include <string_view>

#include "core/MessageHost.h"
#include "core/StyledText.h"
#include "results/MatchListExport.h"

namespace vantorel {

// With an empty preview: "Nothing to Export.", and `choosePath` is not
// asked. Otherwise `choosePath` names the file ("" cancels, silently); the
// name decides what is written (bytesToSave: RTF in the preview's font for a
// name ending in "rtf", else plain text), whole or not at all; a failure is
// told as "<path> could not be saved." with the reason. Success says nothing.
ExportResult exportMatchDetails(const StyledText& preview, std::string_view fontName, int fontPoints,
                                const std::function<std::string()>& choosePath, MessageHost& messages);

}  // namespace vantorel

#pragma once
// "Export Match List...": the results list as a comma-separated log, written
// whole or not at all, and the messages that tell the user how it went. The
// window and the command line both export through here.

#include <functional>
#include <string>
#include <vector>

#include "core/MessageHost.h"
#include "results/ResultRow.h"

namespace vantorel {

// The log: the headers joined by ",", then one line a row, each field as the
// list shows it (neither quoted nor escaped), CR LF line ends.
std::string matchListLog(const std::vector<ResultRow>& rows);

enum class ExportResult { NothingToExport, Cancelled, Written, Failed };

// With no rows: "No Results to Export.", and `choosePath` is not asked.
// Otherwise `choosePath` names the file ("" cancels, silently), the log is
// written there atomically, and the user is told "<path> log file created."
// or "Error exporting log file!".
ExportResult exportMatchList(const std::vector<ResultRow>& rows, const std::function<std::string()>& choosePath,
                             MessageHost& messages);

}  // namespace vantorel

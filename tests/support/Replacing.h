#pragma once
// Replaces run through the engine's driver for the tests, with every question
// answered Yes unless the host has answers of its own.

#include <string>
#include <vector>

#include "search/SearchRun.h"
#include "support/RecordingHost.h"

namespace vantorel::test {

struct Replaced {
    std::vector<std::string> events;  // with the start folder taken out
    std::vector<FileReport> rows;
    std::vector<std::string> messages;
};

// A Replace of `find` by `replacement` in the files under `folder` that `filter` takes.
inline RunRequest replaceRequest(const std::string& folder, std::string find, std::string replacement,
                                 std::string filter = "*.txt", unsigned threads = 0) {
    return RunRequest{.kind = RunKind::Replace, .jobs = {{std::move(find), std::move(replacement)}},
                      .startFolder = folder, .filter = std::move(filter), .threads = threads};
}

inline Replaced runReplace(const RunRequest& r, RecordingHost& host) {
    SearchState state;
    if (host.answers.empty()) host.answers = {true};
    RunSearch(r, state, host);
    Replaced run{{}, host.rows, host.texts()};
    for (std::string event : host.events) {
        for (std::size_t at; (at = event.find(r.startFolder)) != std::string::npos;)
            event.erase(at, r.startFolder.size());
        run.events.push_back(event);
    }
    return run;
}

inline Replaced runReplace(const RunRequest& r) {
    RecordingHost host;
    return runReplace(r, host);
}

// What the writing pass did with the file at `path`.
inline std::string writeStatusOf(const Replaced& run, const std::string& path) {
    for (const FileReport& row : run.rows)
        if (row.path == path && row.write) return std::string(writeStatusName(row.write->status));
    return "no row";
}

}  // namespace vantorel::test

#pragma once
// What the terminal prints of a run, one printer per kind of output, chosen
// once from the options: the standard lines (a row per file, then the
// summary), JSON lines, the summary alone (--quiet), and a dry run's diff
// (the summary then goes to standard error).

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "cli/CliOptions.h"
#include "core/RunTypes.h"

namespace vantorel::cli {

class Printer {
public:
    explicit Printer(std::FILE* out) : out_(out) {}
    virtual ~Printer() = default;

    // A dry run's diff of a file, just before its row.
    virtual void diff(const std::string& text) { (void)text; }
    virtual void row(const FileReport& row) { (void)row; }
    // The summary of a completed run.
    virtual void summary(const RunOutcome& outcome) = 0;

    // Where rows and summaries go: flushed before a question is asked.
    std::FILE* out() const { return out_; }

protected:
    std::FILE* out_;
};

std::unique_ptr<Printer> printerFor(const CliOptions& options);

// The text of a message for a terminal: CR LF becomes LF.
std::string terminalText(const std::string& text);
// A JSON string literal, or {"bytes":"<base64>"} for bytes that are not UTF-8.
std::string jsonString(std::string_view text);

}  // namespace vantorel::cli

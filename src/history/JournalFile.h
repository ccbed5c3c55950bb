#pragma once
// The journal of one recorded Replace: one record a line, appended while the
// run writes its files. A line is "<check> <kind>\t<field>\t...\n", every
// field escaped so that it holds no bare tab, line break or backslash, and
// <check> the ContentHash of the rest in 16 hex digits: a line cut short
// (the process killed, the power cut) is known, and it and what follows are
// ignored. A file's record is appended before the file is replaced, and its
// outcome after: a journal that stops between the two leaves the file's
// contents to tell whether it was written.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "search/FileText.h"
#include "search/RunTypes.h"

namespace vantorel::history {

struct JournalStep {
    std::string find;
    std::string replace;
};

struct RunHeader {
    std::int64_t startedNs = 0;  // since the epoch
    std::string folder;
    std::string filter;
    bool regularExpression = false;
    bool ignoreCase = false;
    bool wholeWords = false;
    bool backups = false;
    bool batch = false;
};

struct JournalFileRecord {
    std::uint64_t number = 0;  // from 1, in the order written
    std::string path;          // as listed
    std::string target;        // the file replaced: the listed one or where its link led
    FileIdentity old;          // the file as its text was read
    std::string kept;          // where its old contents are kept
    FileIdentity keptIdentity;
    FileIdentity written;      // what replaced it
    std::uint64_t writtenHash = 0;
    std::string backup;        // the backup name, when backups were made
    std::string keptBackup;    // the older backup that the run's backup replaced, kept; empty when none
    FileIdentity keptBackupIdentity;
    // The outcome: nothing when the journal ends before it.
    std::optional<WriteStatus> status;
    FileIdentity backupMade;   // the backup the run made (written, backups on)
};

struct Journal {
    RunHeader header;
    std::vector<JournalStep> steps;
    std::vector<JournalFileRecord> files;
    std::optional<std::int64_t> finishedNs;  // the run's end was recorded
    std::string gaveUp;                        // why recording stopped early, if it did
    std::uint64_t validBytes = 0;              // the lines up to here are whole
};

// Reads as much of a journal as is whole; nothing when it cannot be read or
// does not start with a run.
std::optional<Journal> readJournal(const std::string& path);
Journal parseJournal(std::string_view bytes);

// One line, check included.
std::string journalLine(std::string_view kind, const std::vector<std::string>& fields);

std::string runLine(const RunHeader& header);
std::string stepLine(const JournalStep& step);
std::string fileLine(const JournalFileRecord& file);
std::string outcomeLine(std::uint64_t number, WriteStatus status, const FileIdentity& backupMade);
std::string gaveUpLine(const std::string& why);
std::string endLine(std::int64_t finishedNs);

}  // namespace vantorel::history

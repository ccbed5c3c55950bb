#pragma once
// The journal of one recorded Replace: one record a line, appended while the
// run writes its files, and by an Undo as it settles each file. A line is
// "<check> <kind>\t<field>\t...\n", every field escaped so that it holds no
// bare tab, line break or backslash, and <check> the ContentHash of the rest
// in 16 hex digits. Lines that fail their check at the end of the journal are
// a record cut short (the process killed, the power cut) and are ignored;
// one followed by whole records is damaged, and is named as such: the
// records around it still count. A file's record is appended before the
// file is replaced, and its outcome after: a journal that stops between the
// two leaves the file's contents to tell whether it was written.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/FileText.h"
#include "core/RunTypes.h"

namespace vantorel::history {

struct JournalStep {
    std::string find;
    std::string replace;
};

struct RunHeader {
    std::int64_t startedNs = 0;  // since the epoch
    std::string folder;          // as typed
    std::string filter;
    bool regularExpression = false;
    bool ignoreCase = false;
    bool wholeWords = false;
    bool backups = false;
    bool batch = false;
    // The start folder as the run held it: where it really is, and which
    // folder it was. Undo writes below it alone, as the Replace did.
    std::string realFolder;
    dev_t folderDevice = 0;
    ino_t folderInode = 0;
};

// What an Undo made of one file, recorded as soon as it is settled, so that
// an Undo cut short and run again knows which files are done.
enum class UndoResult { Restored, ChangedSince, DeletedSince, ReadOnly, NotKept, Unreachable, Failed };

struct JournalFileRecord {
    std::uint64_t number = 0;  // from 1, in the order written
    std::string path;          // as listed
    std::string target;        // the file replaced: the listed one or where its link leads
    std::string relative;      // the same below the start folder
    FileIdentity old;          // the file as its text was read
    std::string kept;          // where its old contents are kept
    FileIdentity keptIdentity;
    std::uint64_t keptHash = 0;  // of a copy (the contents); 0 for a second name of the file itself
    FileIdentity written;      // what replaced it
    std::uint64_t writtenHash = 0;
    std::string backup;        // the backup's path, when backups were made
    std::string backupRelative;
    std::string keptBackup;    // the older backup that the run's backup replaced, kept; empty when none
    FileIdentity keptBackupIdentity;
    // The outcome: nothing when the journal ends before it.
    std::optional<WriteStatus> status;
    FileIdentity backupMade;   // the backup the run made (written, backups on)
    // What an Undo made of it, once settled.
    std::optional<UndoResult> undone;
};

struct Journal {
    RunHeader header;
    std::vector<JournalStep> steps;
    // By number; a file whose record is damaged is missing from it.
    std::vector<JournalFileRecord> files;
    std::optional<std::int64_t> finishedNs;  // the run's end was recorded
    std::string gaveUp;                        // why recording stopped early, if it did
    std::uint64_t validBytes = 0;              // up to the last whole record
    // Lines (from 1) that are whole but do not match their check, with
    // whole records after them: a journal cut short ends before these.
    std::vector<std::uint64_t> damagedLines;
    // Numbers of files whose record is among them (as later records tell).
    std::vector<std::uint64_t> damagedFiles;
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
std::string undoneLine(std::uint64_t number, UndoResult result);
std::string endLine(std::int64_t finishedNs);

}  // namespace vantorel::history

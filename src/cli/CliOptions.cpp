#include "cli/CliOptions.h"

#include <charconv>

namespace vantorel::cli {

const char* const kUsage =
    R"(Usage: vantorel-cli [OPTIONS] find FIND
  or:  vantorel-cli [OPTIONS] replace FIND REPLACEMENT
  or:  vantorel-cli [OPTIONS] extract FIND
  or:  vantorel-cli [-y] undo [--list]
  or:  vantorel-cli [OPTIONS] --job NAME find|replace|extract
  or:  vantorel-cli [OPTIONS] --entry NAME find|replace|extract
  or:  vantorel-cli [OPTIONS] library
  or:  vantorel-cli [OPTIONS] jobs
Finds, replaces or extracts text in every file under a folder whose name
matches a filter. Options may stand before or after the command word.

  -d, --dir FOLDER        start folder (default: the current folder)
  -f, --filter PATTERNS   ";"-separated wildcard patterns, matched against the
                          whole file name without regard to case: * ? # [abc]
                          [!abc] [a-z] (default "*")
  -e, --regex             FIND is a regular expression with JavaScript's
                          syntax (default: plain text)
  -i, --ignore-case       (default: case-sensitive)
  -w, --whole-words       whole words, plain text only
  -n, --no-subfolders     only the start folder's own files
      --include-vcs       also enter version-control folders (.git, .hg, .svn,
                          .bzr, _darcs, CVS), which are skipped by default
  -b, --backups           keep ".bak" copies when replacing
  -y, --yes               answer every question with Yes
  -a, --show-all          list files without matches too
  -m, --marked FILE       process the files listed in FILE (one path a line)
                          instead of walking a folder
  -j, --threads N         worker threads (default: one per processor)
  -q, --quiet             no per-file lines
      --csv FILE          also write the match list log (CSV) to FILE, when
                          the run lists any file
      --json              one JSON object per listed file, then one for the
                          summary; a path that is not UTF-8 is given as
                          {"bytes": "<base64>"} in place of the string
      --dry-run           replace: show what would change as a unified diff,
                          write nothing (see below)
      --diff              replace: the same diff in each file's own bytes, to
                          apply with patch -p0 from the start folder (implies
                          --dry-run)
      --no-undo           replace: do not record this Replace for undo
      --list              undo: list the recorded Replaces, newest first
      --job NAME          run the saved batch job NAME (the first whose name
                          matches without regard to case): its steps, in
                          order, take the place of FIND and REPLACEMENT
      --entry NAME        use the library entry NAME (letter case counts) as
                          FIND and REPLACEMENT
      --data-dir FOLDER   the folder of RegEx.txt (the library) and
                          BatchJobs.txt (the jobs); by default where the
                          window finds them: beside the program when its
                          folder is writable, else ~/.local/share/vantorel,
                          else the installed share/vantorel
  -h, --help              this text
      --version           the version
  --                      ends the options (for a FIND that starts with "-")

Output:
  One line per listed file, in processing order: full path, TAB, match count,
  TAB, size in characters, TAB, modification time (YYYY-MM-DD hh:mm:ss, local
  time). Then the summary, as the status bar would show it, and the text of
  every message the run ends with. Rows of a Replace end with a fifth field
  ("write" in --json) saying what became of the file: written, read-only,
  outside-start-folder, not-exact-text, foreign-owner, backup-failed,
  changed-meanwhile or failed. Validation messages, read errors and warnings
  go to standard error. "extract" writes the text of every match, each
  followed by CR LF, to standard output, and everything else to standard
  error.

Replacement text:
  In regular-expression mode the replacement may use $& $1..$99 $<name> $` $'
  $$, and \n \r \t \\ for line feed, carriage return, tab and backslash. In
  plain-text mode the replacement is taken as typed ($ references still
  apply).

Reading and writing files:
  Files whose bytes are valid UTF-8 are read as UTF-8, files starting with a
  UTF-16 byte-order mark as UTF-16; any other file as Windows-1252, one byte a
  character. Files are rewritten through a temporary file renamed over them,
  never half-written, keeping owner, mode, ACL and extended attributes; only
  files inside the start folder are written; read-only files (owner-write bit
  clear) are left alone and counted.

Dry run:
  For each file that would change, "--- path" and "+++ path" (relative to the
  start folder) and its hunks with 3 lines of context, lines decoded from the
  file's encoding (Windows-1252 and UTF-16 as UTF-8), with --diff as the
  file's bytes are; then the summary on standard error. Files that would be
  left as they are (read-only ones, ...) are named on standard error. Nothing
  is written and nothing asked.

Undo:
  Every Replace that writes files is recorded, with the old contents of those
  files, under $XDG_STATE_HOME/vantorel/undo (~/.local/state/vantorel/undo).
  "undo" takes back the most recent Replace not yet taken back, after asking;
  a file is restored only when it still holds what the Replace wrote, and any
  other is named and left as it is. "undo --list" shows the recorded Replaces
  and the space they use. The newest 10 are kept (the UndoRuns setting; 0
  records none). A journal is used only when it is the user's own: its folder,
  and each recorded Replace's folder and files, belong to the user and no one
  else may write them, none is a link, and each folder above it belongs to the
  user or root and no one else may write it unless it is sticky. Otherwise a
  Replace goes on unrecorded and undo restores nothing, both saying which
  folder and why.

Library and batch jobs:
  "library" lists the library, one entry a line: name, TAB, pattern, TAB,
  replacement. "jobs" lists the batch jobs, one a line: the name, then TAB and
  each entry's name. Both list in file order, nothing when there is no file. A
  job's steps are its entries looked up in the library, in order; each file is
  read once, each step works on the text the one before it left, and a Replace
  writes each file once, after one confirmation for the whole job. Every step
  is checked before any file is read; -e decides for every step whether its
  pattern is a regular expression; each step that replaces with nothing asks
  first. An entry missing from the library stops the job before it starts.

Questions and stopping:
  Questions are asked on the terminal; with --yes the answer is Yes; without a
  terminal and without --yes the answer is No. Ctrl+C, SIGTERM and SIGHUP stop
  the run within a fraction of a second; files already written stay written.

Exit status:
  0 when something matched, 1 when nothing matched or no file was found, 2
  when the input was refused, the run failed, or a Replace left a file with
  matches unwritten for any reason but its being read-only. A dry run exits as
  a declined Replace: 0 when something would change, 1 when nothing would, 2
  when a file was left out of the diff. undo: 0 when every file was restored,
  1 when there was nothing to undo or the question was declined, 2 when a file
  was left as it was, a record is damaged or the journal was refused.
)";

namespace {

struct OptionInfo {
    char shortName;
    const char* longName;
    bool takesValue;
};

constexpr OptionInfo kOptions[] = {
    {'d', "dir", true},          {'f', "filter", true},    {'e', "regex", false},
    {'i', "ignore-case", false}, {'w', "whole-words", false}, {'n', "no-subfolders", false},
    {'b', "backups", false},     {'y', "yes", false},      {'a', "show-all", false},
    {'m', "marked", true},       {'j', "threads", true},   {'q', "quiet", false},
    {0, "csv", true},            {0, "json", false},       {'h', "help", false},
    {0, "include-vcs", false},  {0, "dry-run", false},    {0, "diff", false},
    {0, "no-undo", false},      {0, "list", false},       {0, "job", true},
    {0, "entry", true},         {0, "data-dir", true},      {0, "version", false},
};

const OptionInfo* findLong(std::string_view name) {
    for (const OptionInfo& option : kOptions)
        if (name == option.longName) return &option;
    return nullptr;
}

const OptionInfo* findShort(char name) {
    for (const OptionInfo& option : kOptions)
        if (option.shortName != 0 && option.shortName == name) return &option;
    return nullptr;
}

// Applies one option; returns an error text or "".
std::string apply(CliOptions& o, const OptionInfo& option, const std::string& value) {
    const std::string_view name = option.longName;
    if (name == "dir") o.folder = value;
    else if (name == "filter") o.filter = value;
    else if (name == "regex") o.regularExpression = true;
    else if (name == "ignore-case") o.ignoreCase = true;
    else if (name == "whole-words") o.wholeWords = true;
    else if (name == "no-subfolders") o.subfolders = false;
    else if (name == "include-vcs") o.includeVersionControl = true;
    else if (name == "backups") o.backups = true;
    else if (name == "yes") o.assumeYes = true;
    else if (name == "show-all") o.showAll = true;
    else if (name == "marked") o.markedFile = value;
    else if (name == "quiet") o.quiet = true;
    else if (name == "csv") {
        if (value.empty()) return "--csv needs a file name";
        o.csvFile = value;
    }
    else if (name == "json") o.json = true;
    else if (name == "dry-run") o.dryRun = true;
    else if (name == "diff") o.dryRun = o.fileBytes = true;
    else if (name == "no-undo") o.record = false;
    else if (name == "list") o.listRuns = true;
    else if (name == "help") o.help = true;
    else if (name == "version") o.version = true;
    else if (name == "job") o.job = value;
    else if (name == "entry") o.entry = value;
    else if (name == "data-dir") o.dataFolder = value;
    else if (name == "threads") {
        unsigned n = 0;
        const auto [end, ec] = std::from_chars(value.data(), value.data() + value.size(), n);
        if (ec != std::errc() || end != value.data() + value.size() || n == 0 || n > 1024)
            return "--threads needs a whole number from 1 to 1024, not '" + value + "'";
        o.threads = n;
    }
    return "";
}

}  // namespace

ParseResult parseCommandLine(const std::vector<std::string>& arguments) {
    CliOptions options;
    std::vector<std::string> positional;
    bool optionsEnded = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& arg = arguments[i];
        if (optionsEnded || arg.size() < 2 || arg[0] != '-') {
            positional.push_back(arg);
            continue;
        }
        if (arg == "--") {
            optionsEnded = true;
            continue;
        }
        auto takeValue = [&](std::string& value) -> bool {
            if (i + 1 >= arguments.size()) return false;
            value = arguments[++i];
            return true;
        };
        if (arg.rfind("--", 0) == 0) {
            const std::size_t equals = arg.find('=');
            const std::string name = arg.substr(2, equals == std::string::npos ? std::string::npos : equals - 2);
            const OptionInfo* option = findLong(name);
            if (!option) return {std::nullopt, "unknown option '--" + name + "'"};
            std::string value;
            if (option->takesValue) {
                if (equals != std::string::npos) value = arg.substr(equals + 1);
                else if (!takeValue(value)) return {std::nullopt, "option '--" + name + "' needs a value"};
            } else if (equals != std::string::npos) {
                return {std::nullopt, "option '--" + name + "' takes no value"};
            }
            if (std::string error = apply(options, *option, value); !error.empty()) return {std::nullopt, error};
            continue;
        }
        // Short options, possibly grouped ("-ei"); a value may follow directly ("-j4").
        for (std::size_t k = 1; k < arg.size(); ++k) {
            const OptionInfo* option = findShort(arg[k]);
            if (!option) return {std::nullopt, std::string("unknown option '-") + arg[k] + "'"};
            std::string value;
            if (option->takesValue) {
                if (k + 1 < arg.size()) value = arg.substr(k + 1);
                else if (!takeValue(value))
                    return {std::nullopt, std::string("option '-") + arg[k] + "' needs a value"};
                k = arg.size();
            }
            if (std::string error = apply(options, *option, value); !error.empty()) return {std::nullopt, error};
        }
    }
    if (options.help || options.version) return {options, ""};
    if (positional.empty())
        return {std::nullopt, "a command is needed: find, replace, extract, undo, library or jobs"};
    if (options.job && options.entry) return {std::nullopt, "--job and --entry cannot be used together"};
    const bool saved = options.job || options.entry;
    const std::string& command = positional[0];
    std::size_t needed = 2;
    if (command == "find") options.kind = RunKind::Find;
    else if (command == "extract") options.kind = RunKind::Extract;
    else if (command == "replace") { options.kind = RunKind::Replace; needed = 3; }
    else if (command == "undo") { options.command = CliCommand::Undo; needed = 1; }
    else if (command == "library" || command == "jobs") {
        options.command = command == "library" ? CliCommand::ListLibrary : CliCommand::ListJobs;
        needed = 1;
    }
    else return {std::nullopt, "unknown command '" + command + "' (use find, replace, extract, undo, library or jobs)"};
    if (options.listRuns && options.command != CliCommand::Undo) return {std::nullopt, "--list goes with undo"};
    if ((options.dryRun || !options.record) && (options.command != CliCommand::Run || options.kind != RunKind::Replace))
        return {std::nullopt,
                std::string(options.dryRun ? "--dry-run and --diff go" : "--no-undo goes") + " with replace"};
    if (saved && options.command != CliCommand::Run)
        return {std::nullopt, "--job and --entry go with find, replace or extract, not " + command};
    if (saved) needed = 1;  // the saved work gives FIND and REPLACEMENT
    if (positional.size() < needed)
        return {std::nullopt, command + (needed == 3 ? " needs FIND and REPLACEMENT" : " needs FIND")};
    if (positional.size() > needed)
        return {std::nullopt, "unexpected argument '" + positional[needed] + "'" +
                                  (saved ? " (--job and --entry take the place of FIND and REPLACEMENT)" : "")};
    if (needed > 1) options.findText = positional[1];
    if (needed == 3) options.replaceText = positional[2];
    return {options, ""};
}

}  // namespace vantorel::cli

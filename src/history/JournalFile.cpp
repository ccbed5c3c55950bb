#include "history/JournalFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "core/ContentHash.h"

namespace vantorel::history {
namespace {

constexpr std::string_view kRun = "run", kStep = "step", kFile = "file", kOutcome = "done", kGaveUp = "gave-up",
                           kEnd = "end", kUndone = "undone";
constexpr std::string_view kVersion = "2";

constexpr std::pair<UndoResult, std::string_view> kUndoResults[] = {
    {UndoResult::Restored, "restored"},         {UndoResult::ChangedSince, "changed-since"},
    {UndoResult::DeletedSince, "deleted-since"}, {UndoResult::ReadOnly, "read-only"},
    {UndoResult::NotKept, "not-kept"},           {UndoResult::Unreachable, "unreachable"},
    {UndoResult::Failed, "failed"},
};
constexpr std::size_t kCheckDigits = 16;

void escapeInto(std::string& out, std::string_view field) {
    for (const char c : field) {
        switch (c) {
            case '\\': out += "\\\\"; break;
            case '\t': out += "\\t"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\0': out += "\\0"; break;
            default: out += c;
        }
    }
}

std::optional<std::string> unescape(std::string_view field) {
    std::string out;
    out.reserve(field.size());
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] != '\\') {
            out += field[i];
            continue;
        }
        if (++i == field.size()) return std::nullopt;
        switch (field[i]) {
            case '\\': out += '\\'; break;
            case 't': out += '\t'; break;
            case 'n': out += '\n'; break;
            case 'r': out += '\r'; break;
            case '0': out += '\0'; break;
            default: return std::nullopt;
        }
    }
    return out;
}

std::string checkOf(std::string_view body) {
    ContentHash hash;
    hash.add(body);
    char digits[kCheckDigits + 1];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash.value()));
    return digits;
}

std::string number(std::int64_t value) { return std::to_string(value); }
std::string number(std::uint64_t value) { return std::to_string(value); }

void addIdentity(std::vector<std::string>& fields, const FileIdentity& identity) {
    fields.push_back(number(static_cast<std::uint64_t>(identity.device)));
    fields.push_back(number(static_cast<std::uint64_t>(identity.inode)));
    fields.push_back(number(identity.size));
    fields.push_back(number(identity.modifiedNs));
    fields.push_back(number(identity.changedNs));
}

// Reads the fields of one parsed line in order; any failure marks it bad.
class Fields {
public:
    explicit Fields(std::vector<std::string> fields) : fields_(std::move(fields)) {}
    bool ok() const noexcept { return ok_; }
    bool done() const noexcept { return at_ == fields_.size(); }
    std::string text() {
        if (at_ >= fields_.size()) {
            ok_ = false;
            return {};
        }
        return std::move(fields_[at_++]);
    }
    template <class Number>
    Number integer() {
        const std::string field = text();
        Number value{};
        const auto [end, ec] = std::from_chars(field.data(), field.data() + field.size(), value);
        if (ec != std::errc() || end != field.data() + field.size()) ok_ = false;
        return value;
    }
    FileIdentity identity() {
        FileIdentity identity;
        identity.device = static_cast<dev_t>(integer<std::uint64_t>());
        identity.inode = static_cast<ino_t>(integer<std::uint64_t>());
        identity.size = integer<std::int64_t>();
        identity.modifiedNs = integer<std::int64_t>();
        identity.changedNs = integer<std::int64_t>();
        return identity;
    }

private:
    std::vector<std::string> fields_;
    std::size_t at_ = 0;
    bool ok_ = true;
};

// The kind and fields of a whole, unspoilt line; nothing otherwise.
std::optional<std::pair<std::string, std::vector<std::string>>> parseLine(std::string_view line) {
    if (line.size() < kCheckDigits + 1 || line[kCheckDigits] != ' ') return std::nullopt;
    const std::string_view body = line.substr(kCheckDigits + 1);
    if (checkOf(body) != line.substr(0, kCheckDigits)) return std::nullopt;
    std::vector<std::string> fields;
    for (std::size_t start = 0;;) {
        const std::size_t tab = body.find('\t', start);
        auto field = unescape(body.substr(start, tab == std::string_view::npos ? std::string_view::npos : tab - start));
        if (!field) return std::nullopt;
        fields.push_back(std::move(*field));
        if (tab == std::string_view::npos) break;
        start = tab + 1;
    }
    std::string kind = std::move(fields.front());
    fields.erase(fields.begin());
    return std::make_pair(std::move(kind), std::move(fields));
}

// Where the file numbered `number` is in the journal's list; nothing when
// no record of it was read.
JournalFileRecord* fileNumbered(Journal& journal, std::uint64_t number) {
    auto& files = journal.files;
    const auto at = std::lower_bound(files.begin(), files.end(), number,
                                     [](const JournalFileRecord& file, std::uint64_t n) { return file.number < n; });
    return at != files.end() && at->number == number ? &*at : nullptr;
}

// Applies one record; false when it does not make sense where it stands.
bool apply(Journal& journal, const std::string& kind, Fields fields, bool first) {
    if (first != (kind == kRun)) return false;
    if (kind == kRun) {
        if (fields.text() != kVersion) return false;
        RunHeader& header = journal.header;
        header.startedNs = fields.integer<std::int64_t>();
        header.folder = fields.text();
        header.filter = fields.text();
        const std::string flags = fields.text();
        header.regularExpression = flags.find('e') != std::string::npos;
        header.ignoreCase = flags.find('i') != std::string::npos;
        header.wholeWords = flags.find('w') != std::string::npos;
        header.backups = flags.find('b') != std::string::npos;
        header.batch = flags.find('B') != std::string::npos;
        header.realFolder = fields.text();
        header.folderDevice = static_cast<dev_t>(fields.integer<std::uint64_t>());
        header.folderInode = static_cast<ino_t>(fields.integer<std::uint64_t>());
    } else if (kind == kStep) {
        JournalStep step;
        step.find = fields.text();
        step.replace = fields.text();
        journal.steps.push_back(std::move(step));
    } else if (kind == kFile) {
        JournalFileRecord file;
        file.number = fields.integer<std::uint64_t>();
        if (file.number == 0 || (!journal.files.empty() && file.number <= journal.files.back().number)) return false;
        file.path = fields.text();
        file.target = fields.text();
        file.relative = fields.text();
        file.old = fields.identity();
        file.kept = fields.text();
        file.keptIdentity = fields.identity();
        file.keptHash = fields.integer<std::uint64_t>();
        file.written = fields.identity();
        file.writtenHash = fields.integer<std::uint64_t>();
        file.backup = fields.text();
        file.backupRelative = fields.text();
        file.keptBackup = fields.text();
        file.keptBackupIdentity = fields.identity();
        journal.files.push_back(std::move(file));
    } else if (kind == kOutcome) {
        const auto which = fields.integer<std::uint64_t>();
        const auto status = writeStatusNamed(fields.text());
        JournalFileRecord* file = fileNumbered(journal, which);
        if (!status) return false;
        const FileIdentity backupMade = fields.identity();
        if (!file) {
            journal.damagedFiles.push_back(which);  // its own record is the damaged one
        } else {
            file->status = status;
            file->backupMade = backupMade;
        }
    } else if (kind == kUndone) {
        const auto which = fields.integer<std::uint64_t>();
        const std::string result = fields.text();
        JournalFileRecord* file = fileNumbered(journal, which);
        for (const auto& [known, name] : kUndoResults)
            if (name == result && file) file->undone = known;
    } else if (kind == kGaveUp) {
        journal.gaveUp = fields.text();
    } else if (kind == kEnd) {
        journal.finishedNs = fields.integer<std::int64_t>();
    }
    return fields.ok() && fields.done();  // a record of a kind not known here counts as damaged
}

}  // namespace

std::string journalLine(std::string_view kind, const std::vector<std::string>& fields) {
    std::string body(kind);
    for (const std::string& field : fields) {
        body += '\t';
        escapeInto(body, field);
    }
    return checkOf(body) + " " + body + "\n";
}

std::string runLine(const RunHeader& header) {
    std::string flags;
    if (header.regularExpression) flags += 'e';
    if (header.ignoreCase) flags += 'i';
    if (header.wholeWords) flags += 'w';
    if (header.backups) flags += 'b';
    if (header.batch) flags += 'B';
    return journalLine(kRun, {std::string(kVersion), number(header.startedNs), header.folder, header.filter, flags,
                              header.realFolder, number(static_cast<std::uint64_t>(header.folderDevice)),
                              number(static_cast<std::uint64_t>(header.folderInode))});
}

std::string stepLine(const JournalStep& step) { return journalLine(kStep, {step.find, step.replace}); }

std::string fileLine(const JournalFileRecord& file) {
    std::vector<std::string> fields{number(file.number), file.path, file.target, file.relative};
    addIdentity(fields, file.old);
    fields.push_back(file.kept);
    addIdentity(fields, file.keptIdentity);
    fields.push_back(number(file.keptHash));
    addIdentity(fields, file.written);
    fields.push_back(number(file.writtenHash));
    fields.push_back(file.backup);
    fields.push_back(file.backupRelative);
    fields.push_back(file.keptBackup);
    addIdentity(fields, file.keptBackupIdentity);
    return journalLine(kFile, fields);
}

std::string outcomeLine(std::uint64_t which, WriteStatus status, const FileIdentity& backupMade) {
    std::vector<std::string> fields{number(which), std::string(writeStatusName(status))};
    addIdentity(fields, backupMade);
    return journalLine(kOutcome, fields);
}

std::string gaveUpLine(const std::string& why) { return journalLine(kGaveUp, {why}); }

std::string undoneLine(std::uint64_t which, UndoResult result) {
    std::string name;
    for (const auto& [known, text] : kUndoResults)
        if (known == result) name = text;
    return journalLine(kUndone, {number(which), name});
}

std::string endLine(std::int64_t finishedNs) { return journalLine(kEnd, {number(finishedNs)}); }

Journal parseJournal(std::string_view bytes) {
    Journal journal;
    std::vector<std::uint64_t> bad;  // lines that failed, not yet known to be damaged rather than cut short
    std::uint64_t line = 0;
    bool started = false;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t end = bytes.find('\n', at);
        if (end == std::string_view::npos) break;  // cut short
        ++line;
        auto parsed = parseLine(bytes.substr(at, end - at));
        at = end + 1;
        if (!parsed || !apply(journal, parsed->first, Fields(std::move(parsed->second)), !started)) {
            if (!started) break;  // without its first record a journal says nothing
            bad.push_back(line);
            continue;
        }
        started = true;
        // A whole record after failed ones: those were damaged, not cut short.
        journal.damagedLines.insert(journal.damagedLines.end(), bad.begin(), bad.end());
        bad.clear();
        journal.validBytes = at;
    }
    std::sort(journal.damagedFiles.begin(), journal.damagedFiles.end());
    journal.damagedFiles.erase(std::unique(journal.damagedFiles.begin(), journal.damagedFiles.end()),
                               journal.damagedFiles.end());
    // Numbers skipped between whole file records belong to damaged ones too.
    std::uint64_t expected = 1;
    for (const JournalFileRecord& file : journal.files) {
        for (; expected < file.number; ++expected) journal.damagedFiles.push_back(expected);
        expected = file.number + 1;
    }
    std::sort(journal.damagedFiles.begin(), journal.damagedFiles.end());
    journal.damagedFiles.erase(std::unique(journal.damagedFiles.begin(), journal.damagedFiles.end()),
                               journal.damagedFiles.end());
    return journal;
}

std::optional<Journal> readJournal(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return std::nullopt;
    std::string bytes;
    char buffer[1 << 16];
    ssize_t n;
    while ((n = ::read(fd, buffer, sizeof buffer)) > 0) bytes.append(buffer, static_cast<std::size_t>(n));
    ::close(fd);
    if (n < 0) return std::nullopt;
    Journal journal = parseJournal(bytes);
    if (journal.validBytes == 0) return std::nullopt;
    return journal;
}

}  // namespace vantorel::history

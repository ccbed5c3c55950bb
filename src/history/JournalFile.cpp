#include "history/JournalFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>

#include "core/ContentHash.h"

namespace vantorel::history {
namespace {

constexpr std::string_view kRun = "run", kStep = "step", kFile = "file", kOutcome = "done", kGaveUp = "gave-up",
                           kEnd = "end";
constexpr std::string_view kVersion = "1";
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
    } else if (kind == kStep) {
        JournalStep step;
        step.find = fields.text();
        step.replace = fields.text();
        journal.steps.push_back(std::move(step));
    } else if (kind == kFile) {
        JournalFileRecord file;
        file.number = fields.integer<std::uint64_t>();
        if (file.number != journal.files.size() + 1) return false;
        file.path = fields.text();
        file.target = fields.text();
        file.old = fields.identity();
        file.kept = fields.text();
        file.keptIdentity = fields.identity();
        file.written = fields.identity();
        file.writtenHash = fields.integer<std::uint64_t>();
        file.backup = fields.text();
        file.keptBackup = fields.text();
        file.keptBackupIdentity = fields.identity();
        journal.files.push_back(std::move(file));
    } else if (kind == kOutcome) {
        const auto which = fields.integer<std::uint64_t>();
        const auto status = writeStatusNamed(fields.text());
        if (which == 0 || which > journal.files.size() || !status) return false;
        JournalFileRecord& file = journal.files[which - 1];
        file.status = status;
        file.backupMade = fields.identity();
    } else if (kind == kGaveUp) {
        journal.gaveUp = fields.text();
    } else if (kind == kEnd) {
        journal.finishedNs = fields.integer<std::int64_t>();
    }
    return fields.ok() && fields.done();  // a record of a kind not known here stops the reading too
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
    return journalLine(kRun, {std::string(kVersion), number(header.startedNs), header.folder, header.filter, flags});
}

std::string stepLine(const JournalStep& step) { return journalLine(kStep, {step.find, step.replace}); }

std::string fileLine(const JournalFileRecord& file) {
    std::vector<std::string> fields{number(file.number), file.path, file.target};
    addIdentity(fields, file.old);
    fields.push_back(file.kept);
    addIdentity(fields, file.keptIdentity);
    addIdentity(fields, file.written);
    fields.push_back(number(file.writtenHash));
    fields.push_back(file.backup);
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

std::string endLine(std::int64_t finishedNs) { return journalLine(kEnd, {number(finishedNs)}); }

Journal parseJournal(std::string_view bytes) {
    Journal journal;
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::size_t end = bytes.find('\n', at);
        if (end == std::string_view::npos) break;  // cut short
        auto line = parseLine(bytes.substr(at, end - at));
        if (!line || !apply(journal, line->first, Fields(std::move(line->second)), at == 0)) break;
        at = end + 1;
        journal.validBytes = at;
    }
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

#include "cli/Printer.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "core/TextEncoding.h"
#include "files/FileFunctions.h"

namespace vantorel::cli {

std::string terminalText(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        out += text[i];
    }
    return out;
}

namespace {

std::string base64(std::string_view bytes) {
    static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t n = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = (group << 8) | (k < n ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        for (std::size_t k = 0; k < 4; ++k) out += k <= n ? kDigits[(group >> (18 - 6 * k)) & 0x3F] : '=';
    }
    return out;
}

unsigned long long number(std::uint64_t n) { return static_cast<unsigned long long>(n); }

std::string writeName(const FileReport& row) {
    return row.write ? std::string(writeStatusName(row.write->status)) : std::string();
}

// The status line, then each note on lines of its own.
void printTextSummary(std::FILE* out, const RunOutcome& outcome) {
    std::fprintf(out, "%s\n", outcome.statusText.c_str());
    for (const std::string& note : outcome.summaryNotes) std::fprintf(out, "%s\n", terminalText(note).c_str());
}

// Path, matches, size, modified and, for a written file, what became of it, TAB between.
class StandardPrinter : public Printer {
public:
    using Printer::Printer;
    void row(const FileReport& row) override {
        const std::string write = writeName(row);
        std::fprintf(out_, "%s\t%llu\t%llu\t%s%s%s\n", row.path.c_str(), number(row.matches),
                     number(row.characters), formatDateTime(row.modified).c_str(), write.empty() ? "" : "\t",
                     write.c_str());
    }
    void summary(const RunOutcome& outcome) override { printTextSummary(out_, outcome); }
};

// The summary alone.
class SummaryPrinter : public Printer {
public:
    using Printer::Printer;
    void summary(const RunOutcome& outcome) override { printTextSummary(out_, outcome); }
};

// A dry run: its diff on standard output, the summary where `out` says.
class DiffPrinter : public Printer {
public:
    using Printer::Printer;
    void diff(const std::string& text) override { std::fwrite(text.data(), 1, text.size(), stdout); }
    void summary(const RunOutcome& outcome) override { printTextSummary(out_, outcome); }
};

// One object per row (without rows: none), the diff inside its row, then one for the summary.
class JsonPrinter : public Printer {
public:
    JsonPrinter(std::FILE* out, bool rows) : Printer(out), rows_(rows) {}

    void diff(const std::string& text) override {
        if (rows_) pendingDiff_ = text;
    }

    void row(const FileReport& row) override {
        if (!rows_) return;
        const std::string diff = std::exchange(pendingDiff_, std::string());
        const std::string write = writeName(row);
        std::string extra;
        if (!write.empty()) extra += ",\"write\":\"" + write + "\"";
        if (!diff.empty()) extra += ",\"diff\":" + jsonString(diff);
        std::fprintf(out_, "{\"path\":%s,\"matches\":%llu,\"size\":%llu,\"modified\":\"%s\"%s}\n",
                     jsonString(row.path).c_str(), number(row.matches), number(row.characters),
                     formatDateTime(row.modified).c_str(), extra.c_str());
    }

    void summary(const RunOutcome& outcome) override {
        std::string messages = "[";
        for (std::size_t i = 0; i < outcome.summaryNotes.size(); ++i) {
            if (i > 0) messages += ',';
            messages += jsonString(terminalText(outcome.summaryNotes[i]));
        }
        messages += "]";
        std::fprintf(out_,
                     "{\"summary\":%s,\"filesProcessed\":%llu,\"matches\":%llu,\"filesWithMatches\":%llu,"
                     "\"readOnlySkipped\":%llu,\"writesRefused\":%llu,\"stopped\":%s,\"replaced\":%s,"
                     "\"messages\":%s}\n",
                     jsonString(outcome.statusText).c_str(), number(outcome.filesDone), number(outcome.totalMatches),
                     number(outcome.filesWithMatches), number(outcome.readOnlySkipped),
                     number(outcome.writesRefused), outcome.stopped ? "true" : "false",
                     outcome.replaced ? "true" : "false", messages.c_str());
    }

private:
    bool rows_;
    std::string pendingDiff_;  // for the row that follows
};

}  // namespace

std::string jsonString(std::string_view text) {
    // Bytes that are not UTF-8 (a file name can be any bytes) cannot be a
    // JSON string without naming something else: they are given as base64.
    if (!isValidUtf8(text)) return "{\"bytes\":\"" + base64(text) + "\"}";
    std::string out = "\"";
    for (const char c : text) {
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (static_cast<unsigned char>(c) < 0x20) {
                    char buffer[8];
                    std::snprintf(buffer, sizeof buffer, "\\u%04x", c);
                    out += buffer;
                } else {
                    out += c;
                }
        }
    }
    return out + "\"";
}

std::unique_ptr<Printer> printerFor(const CliOptions& options) {
    // Extracted text has standard output to itself, and so has a dry run's diff.
    std::FILE* out = options.kind == RunKind::Extract || (options.dryRun && !options.json) ? stderr : stdout;
    if (options.json) return std::make_unique<JsonPrinter>(out, !options.quiet);
    if (options.quiet) return std::make_unique<SummaryPrinter>(out);
    if (options.dryRun) return std::make_unique<DiffPrinter>(out);
    return std::make_unique<StandardPrinter>(out);
}

}  // namespace vantorel::cli

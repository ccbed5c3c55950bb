#include "cli/ConsoleHost.h"

#include <poll.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

#include "cli/PatchName.h"
#include "core/TextEncoding.h"
#include "files/FileFunctions.h"
#include "results/ChangeHunks.h"

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

ConsoleHost::ConsoleHost(const CliOptions& options, bool interactive, const std::atomic<bool>& stop)
    : options_(options),
      interactive_(interactive),
      stop_(stop),
      // A dry run's standard output is its diff alone.
      report_(options.kind == RunKind::Extract || (options.dryRun && !options.json) ? stderr : stdout) {}

void ConsoleHost::showMessage(const Message& message) {
    if (message.kind == MessageKind::Summary) {
        summaries_.push_back(message);  // shown after the summary line
        return;
    }
    std::fprintf(stderr, "%s\n", terminalText(message.text).c_str());
}

bool ConsoleHost::askYesNo(const Message& question) {
    const std::string text = terminalText(question.text);
    if (options_.assumeYes) {
        std::fprintf(stderr, "%s yes\n", text.c_str());
        return true;
    }
    if (!interactive_) {
        std::fprintf(stderr, "%s no (no terminal to ask; --yes answers Yes)\n", text.c_str());
        return false;
    }
    std::fflush(report_);
    std::fprintf(stderr, "%s [y/N] ", text.c_str());
    std::fflush(stderr);
    std::string answer;
    while (true) {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        const int ready = ::poll(&input, 1, 100);
        if (stop_.load()) {
            std::fprintf(stderr, "\n");
            return false;
        }
        if (ready <= 0) continue;
        char c;
        const ssize_t n = ::read(STDIN_FILENO, &c, 1);
        if (n <= 0) {
            std::fprintf(stderr, "\n");
            break;
        }
        if (c == '\n') break;
        answer += c;
    }
    return answer == "y" || answer == "Y" || answer == "yes" || answer == "Yes" || answer == "YES";
}

void ConsoleHost::report(RunReport report) {
    std::visit(Overloaded{
                   [this](const reports::PassStarted& started) { passStarted(started.pass); },
                   [this](const reports::RowsCleared&) { clearRows(); },
                   [this](const reports::Row& added) { addRow(added.row); },
                   [this](const reports::Extracted& extracted) { appendExtracted(extracted.text); },
                   [this](const reports::Changes& changes) { showChanges(changes); },
                   [](const auto&) {},  // the terminal shows no status, progress or preview
               },
               report);
}

void ConsoleHost::passStarted(PassKind pass) {
    holdRows_ = pass == PassKind::Counting && !options_.dryRun;
}

void ConsoleHost::showChanges(const reports::Changes& changes) {
    if (changes.changes.refused) {
        std::fprintf(stderr, "%s: %s, it would be left as it is\n", changes.path.c_str(),
                     std::string(writeStatusName(*changes.changes.refused)).c_str());
        return;
    }
    if (changes.changes.hunks.empty()) return;  // replaced by the same text
    const PatchName name = patchNameOf(changes.path, realStartFolder_);
    if (name.name.empty()) {
        std::fprintf(stderr, "%s: %s; it is left out of the diff\n", changes.path.c_str(), name.problem.c_str());
        ++leftOutOfDiff_;
        return;
    }
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const std::string diff = unifiedDiff({name.name, changes.changes.modifiedNs},
                                         {name.name, now.tv_sec * std::int64_t{1000000000} + now.tv_nsec},
                                         changes.changes.hunks);
    if (options_.json) pendingDiff_ = diff;
    else if (!options_.quiet) std::fwrite(diff.data(), 1, diff.size(), stdout);
}

void ConsoleHost::clearRows() {
    heldRows_.clear();
    rows_.clear();
}

void ConsoleHost::addRow(const FileReport& row) {
    rows_.push_back(ResultRow::fromReport(row));
    if (holdRows_) heldRows_.push_back(row);
    else printRow(row);
}

void ConsoleHost::printRow(const FileReport& row) {
    std::string diff = std::move(pendingDiff_);
    pendingDiff_.clear();
    if (options_.quiet || (options_.dryRun && !options_.json)) return;  // a dry run shows its diff instead
    const std::string write = row.write ? std::string(writeStatusName(row.write->status)) : std::string();
    if (options_.json) {
        std::string extra;
        if (!write.empty()) extra += ",\"write\":\"" + write + "\"";
        if (!diff.empty()) extra += ",\"diff\":" + jsonString(diff);
        std::fprintf(report_, "{\"path\":%s,\"matches\":%llu,\"size\":%llu,\"modified\":\"%s\"%s}\n",
                     jsonString(row.path).c_str(), static_cast<unsigned long long>(row.matches),
                     static_cast<unsigned long long>(row.characters), formatDateTime(row.modified).c_str(),
                     extra.c_str());
    } else {
        std::fprintf(report_, "%s\t%llu\t%llu\t%s%s%s\n", row.path.c_str(),
                     static_cast<unsigned long long>(row.matches),
                     static_cast<unsigned long long>(row.characters), formatDateTime(row.modified).c_str(),
                     write.empty() ? "" : "\t", write.c_str());
    }
}

void ConsoleHost::printHeldRows() {
    for (const FileReport& row : heldRows_) printRow(row);
    heldRows_.clear();
}

void ConsoleHost::appendExtracted(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

namespace {

// What a closing box adds to the status line that is printed anyway: its
// whole text, or only the lines after the status line that it starts with.
std::string beyondStatus(const std::string& boxText, const std::string& status) {
    if (boxText == status) return "";
    if (boxText.starts_with(status + "\r\n")) return boxText.substr(status.size() + 2);
    return boxText;
}

}  // namespace

void ConsoleHost::finish(const RunOutcome& outcome) {
    printHeldRows();
    if (outcome.result != RunResult::Completed) return;
    std::vector<std::string> texts;
    for (const Message& message : summaries_)
        if (std::string text = beyondStatus(message.text, outcome.statusText); !text.empty())
            texts.push_back(terminalText(text));
    if (options_.json) {
        std::string messages = "[";
        for (std::size_t i = 0; i < texts.size(); ++i) {
            if (i > 0) messages += ',';
            messages += jsonString(texts[i]);
        }
        messages += "]";
        std::fprintf(report_,
                     "{\"summary\":%s,\"filesProcessed\":%llu,\"matches\":%llu,\"filesWithMatches\":%llu,"
                     "\"readOnlySkipped\":%llu,\"writesRefused\":%llu,\"stopped\":%s,\"replaced\":%s,"
                     "\"messages\":%s}\n",
                     jsonString(outcome.statusText).c_str(),
                     static_cast<unsigned long long>(outcome.filesDone),
                     static_cast<unsigned long long>(outcome.totalMatches),
                     static_cast<unsigned long long>(outcome.filesWithMatches),
                     static_cast<unsigned long long>(outcome.readOnlySkipped),
                     static_cast<unsigned long long>(outcome.writesRefused),
                     outcome.stopped ? "true" : "false", outcome.replaced ? "true" : "false",
                     messages.c_str());
        return;
    }
    std::fprintf(report_, "%s\n", outcome.statusText.c_str());
    for (const std::string& text : texts) std::fprintf(report_, "%s\n", text.c_str());
}

}  // namespace vantorel::cli

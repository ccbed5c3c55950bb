#include "search/FileProcessor.h"

#include <algorithm>

#include <sys/stat.h>

#include "files/FileFunctions.h"
#include "regex/AsciiLiteralFinder.h"
#include "files/FileText.h"
#include "search/WriteBack.h"

namespace vantorel {

CompiledJob::CompiledJob(std::string findPattern, std::string replaceText, bool ignoreCase)
    : findPattern_(std::move(findPattern)),
      replaceText_(std::move(replaceText)),
      regex_(findPattern_, ignoreCase),
      utf8Template_(replaceText_, regex_.forEncoding(TextEncoding::Utf8)),
      singleByteTemplate_(utf8Template_.transcoded(TextEncoding::Windows1252)),
      encodingIndependent_(AsciiLiteralFinder::literalOf(findPattern_).has_value()) {}

const ReplaceTemplate* CompiledJob::replacement(TextEncoding encoding) const {
    if (encoding == TextEncoding::Utf8) return &utf8Template_;
    return singleByteTemplate_ ? &*singleByteTemplate_ : nullptr;
}

namespace {

// Appends the value of every match, each followed by CR LF, as UTF-8.
std::uint64_t collectMatches(const CompiledPattern& pattern, std::string_view text,
                             std::string& out) {
    std::uint64_t count = 0;
    pattern.forEachMatch(text, [&](const Match& match) {
        out += toUtf8(match.value(), pattern.encoding());
        out += "\r\n";
        ++count;
        return true;
    });
    return count;
}

// Finds, counts or collects without changing the text: every job sees the
// text as it was read.
std::uint64_t searchJobs(const std::string& path, const FileText& text,
                         const std::vector<CompiledJob>& jobs, const PassSettings& pass,
                         FileOutcome& outcome) {
    std::uint64_t total = 0;
    const auto& preview = pass.request ? pass.request->previewSection : nullptr;
    // A plain search for ASCII literals finds the same bytes in either
    // encoding: the text need not be scanned unless something is found.
    const bool independent = !pass.replacing && !pass.extract && !preview &&
                             std::all_of(jobs.begin(), jobs.end(), [](const CompiledJob& job) {
                                 return job.empty() || job.encodingIndependent();
                             });
    const TextEncoding encoding = independent ? TextEncoding::Utf8 : text.encoding();
    for (const CompiledJob& job : jobs) {
        if (job.empty()) continue;
        if (pass.replacing && !job.replacement(encoding)) continue;
        const CompiledPattern& pattern = job.pattern(encoding);
        total += pass.extract ? collectMatches(pattern, text.bytes(), outcome.extracted)
                              : pattern.countMatches(text.bytes());
        if (preview && total > 0) outcome.previewSections.push_back(preview(path, text.bytes(), encoding, pattern));
    }
    return total;
}

std::optional<FileKey> entryOf(const std::string& path) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0) return std::nullopt;
    return FileKey{st.st_dev, st.st_ino};
}

}  // namespace

FileOutcome processFile(const std::string& path, const std::vector<CompiledJob>& jobs,
                        const PassSettings& pass, WriteTurn* turn, std::unique_ptr<KeptText> kept) {
    FileOutcome outcome;
    FileText::Result read;
    if (kept && FileIdentity::of(path) == kept->text.identity()) read.text = std::move(kept->text);
    else read = FileText::read(path);
    kept.reset();
    switch (read.status) {
        case FileText::Status::Ok: break;
        case FileText::Status::Vanished: return outcome;
        case FileText::Status::TooLarge:
            outcome.readError = Message{tooLargeMessage(path), kProgramTitle, MessageIcon::None,
                                        MessageKind::FileError};
            return outcome;
        case FileText::Status::Error:
            outcome.readError = Message{readErrorMessage(path, read.error), kProgramTitle,
                                        MessageIcon::None, MessageKind::FileError};
            return outcome;
    }
    const FileText& text = read.text;
    if (text.bytes().empty()) return outcome;  // an empty file is never listed
    outcome.read = true;
    outcome.modified = text.modified();
    outcome.bytes = static_cast<std::uint64_t>(text.identity().size);
    outcome.file = FileKey{text.identity().device, text.identity().inode};
    static const WriteSettings defaults;
    const WriteSettings& writing = pass.writing ? *pass.writing : defaults;
    try {
        if (!pass.write) {
            outcome.matches = searchJobs(path, text, jobs, pass, outcome);
            if (pass.replacing && pass.makeBackups && outcome.matches > 0)
                outcome.backupEntry = entryOf(backupNameFor(path));
            if (pass.replacing && outcome.matches > 0 && pass.request && pass.request->changes)
                outcome.changes = previewChanges(path, text, jobs, writing, *pass.request->changes);
        } else {
            PreparedWrite prepared = prepareWriteBack(path, text, jobs, writing, turn);
            if (prepared.stopped) throw MatchStopped();
            outcome.matches = prepared.matches;
            outcome.pendingWrite = std::move(prepared.pending);
            outcome.refused = std::move(prepared.refused);
            outcome.writeMessages = std::move(prepared.messages);
            outcome.noSpace = prepared.noSpace;
        }
    } catch (const MatchError& error) {
        throw MatchError(path + ": " + error.what());  // which file the engine gave up on
    }
    if (outcome.matches > 0 || outcome.refused || pass.listsEveryFile) outcome.characters = text.characters();
    if (text.changedWhileRead()) {
        // Another program cut the file short or rewrote it meanwhile: what we
        // found or would write is not to be trusted.
        FileOutcome changed;
        changed.readError = Message{readErrorMessage(path, kChangedWhileRead), kProgramTitle,
                                    MessageIcon::None, MessageKind::FileError};
        return changed;
    }
    if (pass.keepTexts && outcome.matches > 0 && !text.mapped())
        if (auto share = pass.keepTexts->tryShare(text.bytes().size()))
            outcome.keptText.reset(new KeptText{std::move(read.text), std::move(*share)});
    return outcome;
}

}  // namespace vantorel

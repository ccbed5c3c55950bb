#include "cli/UndoCommand.h"

#include <cstdio>

#include "cli/ConsoleHost.h"
#include "history/UndoTexts.h"

namespace vantorel::cli {

using namespace history;

int listRuns(const UndoJournal& journal) {
    if (const std::optional<Distrust> refused = journal.refused()) {
        std::fprintf(stderr, "%s\n", terminalText(journalRefused(journal.folder(), *refused)).c_str());
        return 2;
    }
    const std::vector<RecordedRun> runs = journal.runs();
    bool next = true;
    int status = runs.empty() ? 1 : 0;
    for (const RecordedRun& run : runs) {
        if (run.refused) {  // named, and not read
            std::fprintf(stderr, "%s\n", terminalText(runRefused(run, *run.refused)).c_str());
            status = 2;
            next = false;  // undo stops at it
            continue;
        }
        if (run.unreadable) {  // passed over
            std::printf("%s\t%s\n", run.name.c_str(), kRunUnreadable);
            continue;
        }
        const char* state = run.undone ? "undone" : next ? "next to undo" : "can be undone";
        if (!run.undone) next = false;
        std::printf("%s\t%llu file(s)\t%s\t%s\t%s\t%s%s\n", runTime(run).c_str(),
                    static_cast<unsigned long long>(run.filesWritten), run.header.folder.c_str(),
                    run.header.filter.c_str(), runSteps(run, "; ").c_str(), state, run.finished ? "" : " (cut short)");
    }
    std::printf("%zu replace(s) kept in %s, using %llu KB\n", runs.size(), journal.folder().c_str(),
                static_cast<unsigned long long>((journal.spaceUsed() + 1023) / 1024));
    return status;
}

int undoLastRun(UndoJournal& journal, MessageHost& asker) {
    if (const std::optional<Distrust> refused = journal.refused()) {
        std::fprintf(stderr, "%s\n", terminalText(undoRefused(journal.folder(), *refused)).c_str());
        return 2;
    }
    const std::optional<RecordedRun> run = journal.nextToUndo();
    if (!run) {
        std::fprintf(stderr, "%s\n", kNothingToUndo);
        return 1;
    }
    if (run->refused) {
        std::fprintf(stderr, "%s\n", terminalText(runRefused(*run, *run->refused)).c_str());
        return 2;
    }
    if (!asker.askYesNo(Message{undoQuestion(*run), kUndoTitle, MessageIcon::Question, MessageKind::Notice})) return 1;
    const UndoJournal::Undo undo = journal.undo(*run);
    if (undo.status != UndoJournal::UndoStatus::Done) {
        std::fprintf(stderr, "%s\n", undo.message.c_str());
        return 2;
    }
    for (const UndoFile& file : undo.outcome.files)
        std::printf("%s\t%s\n", file.path.c_str(), undoReason(file).c_str());
    std::printf("%s\n", undoSummary(undo.outcome).c_str());
    for (const std::uint64_t line : undo.outcome.damagedLines)
        std::fprintf(stderr, "Record %llu of this Replace's journal is damaged: the file it recorded was not restored.\n",
                     static_cast<unsigned long long>(line));
    return undo.outcome.left() == 0 && undo.outcome.complete() ? 0 : 2;
}

}  // namespace vantorel::cli

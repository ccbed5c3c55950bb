#include "ui/windows/UndoReplace.h"

#include <QtConcurrent/QtConcurrentRun>

#include "history/UndoTexts.h"

namespace vantorel::ui {
namespace {

constexpr std::size_t kListedFiles = 20;  // files left, named in the report

Message message(std::string text, MessageIcon icon) {
    return Message{std::move(text), history::kUndoTitle, icon, MessageKind::Notice};
}

}  // namespace

UndoReplace::UndoReplace(history::UndoJournal& journal, MessageHost& messages, QObject* parent)
    : QObject(parent), journal_(journal), messages_(messages) {
    connect(&watcher_, &QFutureWatcher<history::UndoJournal::Undo>::finished, this,
            [this] { report(watcher_.result()); });
}

UndoReplace::~UndoReplace() { watcher_.waitForFinished(); }

bool UndoReplace::start() {
    if (busy()) return false;
    if (const std::optional<history::Distrust> refused = journal_.refused()) {
        messages_.showMessage(message(history::undoRefused(journal_.folder(), *refused), MessageIcon::Warning));
        return false;
    }
    const std::optional<history::RecordedRun> run = journal_.nextToUndo();
    if (!run) {
        messages_.showMessage(message(history::kNothingToUndo, MessageIcon::Information));
        return false;
    }
    if (run->refused) {
        messages_.showMessage(message(history::runRefused(*run, *run->refused), MessageIcon::Warning));
        return false;
    }
    if (!messages_.askYesNo(message(history::undoQuestion(*run), MessageIcon::Question))) return false;
    history::UndoJournal* journal = &journal_;
    watcher_.setFuture(QtConcurrent::run([journal, run = *run] { return journal->undo(run); }));
    return true;
}

void UndoReplace::report(const history::UndoJournal::Undo& undo) {
    using Status = history::UndoJournal::UndoStatus;
    if (undo.status != Status::Done) {
        messages_.showMessage(message(undo.message, MessageIcon::Warning));
        emit finished(QString::fromStdString(undo.message));
        return;
    }
    const bool whole = undo.outcome.left() == 0 && undo.outcome.complete();
    messages_.showMessage(message(history::undoReport(undo.outcome, kListedFiles),
                                  whole ? MessageIcon::Information : MessageIcon::Warning));
    emit finished(QString::fromStdString(history::undoSummary(undo.outcome)));
}

}  // namespace vantorel::ui

#pragma once
// "Undo Last Replace...": asks with the summary of the Replace that Undo
// takes back, takes it back on a thread of its own while the window waits,
// and reports what was restored and what was left as it was.

#include <QFutureWatcher>
#include <QObject>

#include "core/MessageHost.h"
#include "history/UndoJournal.h"

namespace vantorel::ui {

class UndoReplace : public QObject {
    Q_OBJECT
public:
    UndoReplace(history::UndoJournal& journal, MessageHost& messages, QObject* parent = nullptr);
    ~UndoReplace() override;

    // Whether there is a Replace to take back (the command is enabled).
    bool available() const { return !busy() && journal_.canUndo(); }
    bool busy() const { return watcher_.isRunning(); }
    // Asks and, on Yes, starts; false when nothing was started.
    bool start();

signals:
    // The Replace was taken back (as far as it could be); `summary` for the status bar.
    void finished(const QString& summary);

private:
    void report(const history::UndoJournal::Undo& undo);

    history::UndoJournal& journal_;
    MessageHost& messages_;
    QFutureWatcher<history::UndoJournal::Undo> watcher_;
};

}  // namespace vantorel::ui

#pragma once
// Turns a request to end (SIGTERM), the terminal going away (SIGHUP) and
// Ctrl+C in the terminal that started the program (SIGINT) into a Qt signal
// on the window's thread, so that the window can stop its run and close as
// if the user had closed it: the run's temporary files are cleared away and
// the settings saved. The handler only writes a byte to a pipe; a second
// signal of the same kind ends the program at once (files are never
// half-written either way; a later run clears what is left). A signal that
// the program was started to ignore (nohup, a background job) stays ignored.

#include <QObject>

class QSocketNotifier;

namespace vantorel::ui {

class TerminationSignals : public QObject {
    Q_OBJECT
public:
    // One instance at a time; it puts the previous handlers back when destroyed.
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

signals:
    void received(int signal);

private:
    void readPipe();

    QSocketNotifier* notifier_ = nullptr;
};

}  // namespace vantorel::ui

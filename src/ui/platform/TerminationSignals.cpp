#include "ui/platform/TerminationSignals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>

namespace vantorel::ui {
namespace {

constexpr int kSignals[] = {SIGTERM, SIGHUP, SIGINT};

int gPipe[2] = {-1, -1};
struct sigaction gPrevious[std::size(kSignals)];

void onSignal(int signal) {
    const int saved = errno;
    const char byte = static_cast<char>(signal);
    [[maybe_unused]] const ssize_t written = ::write(gPipe[1], &byte, 1);
    errno = saved;
}

}  // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    if (::pipe2(gPipe, O_CLOEXEC | O_NONBLOCK) != 0) return;  // the signals keep their default action
    notifier_ = new QSocketNotifier(gPipe[0], QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &TerminationSignals::readPipe);
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    // The second signal of a kind takes its default action: the program ends.
    action.sa_flags = SA_RESTART | SA_RESETHAND;
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
        ::sigaction(kSignals[i], nullptr, &gPrevious[i]);
        // A signal the program was started to ignore (nohup, a background job) stays ignored.
        if (gPrevious[i].sa_handler != SIG_IGN) ::sigaction(kSignals[i], &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals() {
    if (!notifier_) return;
    for (std::size_t i = 0; i < std::size(kSignals); ++i) ::sigaction(kSignals[i], &gPrevious[i], nullptr);
    delete notifier_;
    for (int& fd : gPipe) {
        ::close(fd);
        fd = -1;
    }
}

void TerminationSignals::readPipe() {
    char byte = 0;
    while (::read(gPipe[0], &byte, 1) == 1) emit received(static_cast<unsigned char>(byte));
}

}  // namespace vantorel::ui

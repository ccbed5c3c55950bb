#pragma once
// Runs vantorel-cli as a child process with its standard input from
// /dev/null (or from a terminal that the test types into), capturing
// standard output and standard error.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

extern char** environ;

namespace vantorel::test {

// A text's lines, without their line feeds.
inline std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find('\n', at);
        out.push_back(text.substr(at, end - at));
        at = end == std::string::npos ? text.size() : end + 1;
    }
    return out;
}

struct CliResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

class CliProcess {
public:
    // With `terminal` set, standard input is a pseudo-terminal. A `runner`
    // (a program and its arguments, such as setpriv's) starts the program.
    explicit CliProcess(const std::vector<std::string>& args, const std::string& cwd = "", bool terminal = false,
                        const std::vector<std::string>& runner = {}) {
        int outPipe[2], errPipe[2];
        if (::pipe(outPipe) != 0 || ::pipe(errPipe) != 0) throw std::runtime_error("pipe");
        std::string input = "/dev/null";
        if (terminal) {
            terminal_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
            if (terminal_ < 0 || ::grantpt(terminal_) != 0 || ::unlockpt(terminal_) != 0)
                throw std::runtime_error("pseudo-terminal");
            input = ::ptsname(terminal_);
        }
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 0, input.c_str(), terminal ? O_RDWR | O_NOCTTY : O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions, outPipe[1], 1);
        posix_spawn_file_actions_adddup2(&actions, errPipe[1], 2);
        posix_spawn_file_actions_addclose(&actions, outPipe[0]);
        posix_spawn_file_actions_addclose(&actions, errPipe[0]);
        if (!cwd.empty()) posix_spawn_file_actions_addchdir_np(&actions, cwd.c_str());
        std::vector<std::string> all = runner;
        all.push_back(VANTOREL_CLI);
        all.insert(all.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (std::string& a : all) argv.push_back(a.data());
        argv.push_back(nullptr);
        if (posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ) != 0)
            throw std::runtime_error("spawn");
        posix_spawn_file_actions_destroy(&actions);
        ::close(outPipe[1]);
        ::close(errPipe[1]);
        out_ = outPipe[0];
        err_ = errPipe[0];
    }

    // Reads standard output until at least one byte has come.
    void readSomeOutput() {
        char buffer[4096];
        const ssize_t n = ::read(out_, buffer, sizeof buffer);
        if (n > 0) result_.out.append(buffer, static_cast<std::size_t>(n));
    }

    void interrupt(int signal = SIGINT) { ::kill(pid_, signal); }
    // Types on the terminal (kept by it until the program reads).
    void type(const std::string& text) {
        if (::write(terminal_, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
            throw std::runtime_error("typing on the terminal");
    }
    ~CliProcess() {
        if (terminal_ >= 0) ::close(terminal_);
    }

    CliResult wait() {
        pollfd fds[2] = {{out_, POLLIN, 0}, {err_, POLLIN, 0}};
        int open = 2;
        char buffer[65536];
        while (open > 0) {
            ::poll(fds, 2, -1);
            for (int i = 0; i < 2; ++i) {
                if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP))) continue;
                const ssize_t n = ::read(fds[i].fd, buffer, sizeof buffer);
                if (n <= 0) {
                    ::close(fds[i].fd);
                    fds[i].fd = -1;
                    --open;
                } else {
                    (i == 0 ? result_.out : result_.err).append(buffer, static_cast<std::size_t>(n));
                }
            }
        }
        int status = 0;
        ::waitpid(pid_, &status, 0);
        result_.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        return result_;
    }

private:
    pid_t pid_ = -1;
    int out_ = -1;
    int err_ = -1;
    int terminal_ = -1;
    CliResult result_;
};

inline CliResult runCli(const std::vector<std::string>& args, const std::string& cwd = "") {
    return CliProcess(args, cwd).wait();
}

// A run with `prefix` (such as --dir and a folder) before the arguments.
inline CliResult runCli(std::vector<std::string> prefix, const std::vector<std::string>& args) {
    prefix.insert(prefix.end(), args.begin(), args.end());
    return runCli(prefix);
}

}  // namespace vantorel::test

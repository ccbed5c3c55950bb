#include "history/UndoJournal.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <system_error>

#include "core/AtomicFileWriter.h"
#include "core/FileDescriptor.h"
#include "core/TreeRoot.h"
#include "files/FileFunctions.h"
#include "files/FileListBuilder.h"
#include "history/RunRecorder.h"
#include "history/UndoTexts.h"

namespace vantorel::history {
namespace {

namespace fs = std::filesystem;

const std::string kSetAsidePrefix = "old-";

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

}  // namespace

std::string UndoJournal::defaultFolder() {
    if (const std::string own = environment("VANTOREL_CONFIG_HOME"); !own.empty()) return own + "/undo";
    if (const std::string xdg = environment("XDG_STATE_HOME"); !xdg.empty() && fs::path(xdg).is_absolute())
        return xdg + "/vantorel/undo";
    if (const std::string home = environment("HOME"); !home.empty()) return home + "/.local/state/vantorel/undo";
    return {};
}

std::string UndoJournal::runName(std::int64_t startedNs, int pid) {
    char name[64];
    std::snprintf(name, sizeof name, "%020lld-%d", static_cast<long long>(startedNs), pid);
    return name;
}

UndoJournal::UndoJournal(std::string folder, unsigned keepRuns) : folder_(std::move(folder)), keepRuns_(keepRuns) {}

std::unique_ptr<ReplaceRecorder> UndoJournal::startRun(const RunRequest& request, const TreeRoot& root) {
    if (keepRuns_ == 0 || folder_.empty()) return nullptr;
    RunHeader header;
    header.folder = request.startFolder;
    header.filter = request.filter;
    header.regularExpression = request.regularExpression;
    header.ignoreCase = request.ignoreCase;
    header.wholeWords = request.wholeWords;
    header.backups = request.makeBackups;
    header.batch = request.batch;
    header.realFolder = root.realPath();
    header.folderDevice = root.device();
    header.folderInode = root.inode();
    std::vector<JournalStep> steps;
    for (const FindReplaceJob& job : request.jobs) steps.push_back({job.findText, job.replaceText});
    return std::make_unique<RunRecorder>(*this, std::move(header), std::move(steps), root.fd());
}

int UndoJournal::lock(bool alone) const {
    if (std::optional<Distrust> refused = makeJournalFolder(folder_)) {
        if (refused->reason != Distrust::Reason::Unreadable) throw UntrustedJournal(std::move(*refused));
        throw std::system_error(refused->error, std::generic_category(), refused->path);
    }
    const std::string path = folder_ + "/lock";
    const int fd = ::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0) throw std::system_error(errno, std::generic_category(), path);
    while (::flock(fd, alone ? LOCK_EX | LOCK_NB : LOCK_SH) != 0) {
        if (errno == EINTR) continue;
        const int error = errno;
        ::close(fd);
        if (alone && error == EWOULDBLOCK) return -1;
        throw std::system_error(error, std::generic_category(), path);
    }
    return fd;
}

std::vector<std::string> UndoJournal::runNames() const {
    std::vector<std::string> names;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(folder_, ec)) {
        const std::string name = entry.path().filename().string();
        if (name.size() > 21 && name[20] == '-' && entry.is_directory(ec)) names.push_back(name);
    }
    std::sort(names.begin(), names.end());  // oldest first: the names start with the time
    return names;
}

std::optional<Distrust> UndoJournal::refused() const { return checkJournalFolder(folder_); }

// The run's folder and what is in it but its kept contents, which are
// second names of files whoever owns them, in a folder no one else may
// write; and its folders elsewhere as a journal's folder is.
std::optional<Distrust> UndoJournal::refusedRun(const std::string& folder) const {
    if (auto refused = checkOwnFolder(folder)) return refused;
    // Those not made yet (a run being started) may be missing: it is no run then.
    for (const char* file : {kJournalFile, kElsewhereFile, kUndoneFile})
        if (auto refused = checkOwnFile(folder + "/" + file, true)) return refused;
    if (auto refused = checkOwnFolder(folder + "/" + kKeptFolder, true)) return refused;
    for (const std::string& elsewhere : elsewhereOf(folder))
        if (auto refused = checkJournalFolder(elsewhere)) return refused;
    return std::nullopt;
}

std::vector<RecordedRun> UndoJournal::runs() const {
    std::vector<RecordedRun> runs;
    const std::vector<std::string> names = runNames();
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        const std::string run = folder_ + "/" + *name + "/";
        if (std::optional<Distrust> refused = refusedRun(folder_ + "/" + *name)) {
            RecordedRun untrusted;
            untrusted.name = *name;
            untrusted.refused = std::move(refused);
            runs.push_back(std::move(untrusted));
            continue;
        }
        std::optional<Journal> journal = readJournal(run + kJournalFile);
        if (!journal) {
            struct stat st {};
            if (::stat((run + kJournalFile).c_str(), &st) != 0) continue;  // not a run (yet)
            RecordedRun unreadable;
            unreadable.name = *name;
            unreadable.unreadable = true;
            runs.push_back(std::move(unreadable));
            continue;
        }
        RecordedRun recorded;
        recorded.name = *name;
        recorded.header = std::move(journal->header);
        recorded.steps = std::move(journal->steps);
        for (const JournalFileRecord& file : journal->files)
            if (file.status == WriteStatus::Written || !file.status) ++recorded.filesWritten;
        recorded.finished = journal->finishedNs.has_value();
        struct stat st {};
        recorded.undone = ::stat((run + kUndoneFile).c_str(), &st) == 0;
        runs.push_back(std::move(recorded));
    }
    return runs;
}

std::optional<RecordedRun> UndoJournal::nextToUndo() const {
    for (RecordedRun& run : runs())
        if (!run.undone && !run.unreadable) return std::move(run);
    return std::nullopt;
}

bool UndoJournal::canUndo() const {
    struct stat st {};
    for (const std::string& name : runNames()) {
        const std::string run = folder_ + "/" + name + "/";
        if (::stat((run + kJournalFile).c_str(), &st) == 0 && ::stat((run + kUndoneFile).c_str(), &st) != 0)
            return true;
    }
    return false;
}

UndoJournal::Undo UndoJournal::undo(const RecordedRun& run) {
    Undo undo;
    auto refuse = [&](UndoStatus status, std::string message) {
        undo.status = status;
        undo.message = std::move(message);
        return undo;
    };
    int fd = -1;
    try {
        fd = lock(true);
    } catch (const std::system_error&) {
        return refuse(UndoStatus::Unreadable, kUndoUnreadable);
    }
    const FileDescriptor held(fd);
    if (held.get() < 0) return refuse(UndoStatus::Busy, kUndoBusy);
    const std::string folder = folder_ + "/" + run.name + "/";
    const std::optional<Journal> journal = readJournal(folder + kJournalFile);
    if (!journal || journal->header.realFolder.empty()) return refuse(UndoStatus::Unreadable, kUndoUnreadable);
    // Only below the folder the Replace ran in, reached as it was then.
    std::optional<TreeRoot> root;
    try {
        root.emplace(TreeRoot::reopen(journal->header.realFolder, journal->header.folderDevice,
                                      journal->header.folderInode));
    } catch (const std::system_error& error) {
        return refuse(UndoStatus::FolderGone, undoFolderGone(journal->header.realFolder, error.code().value()));
    }
    // Each file's result is recorded as soon as it is settled.
    const FileDescriptor log(::open((folder + kJournalFile).c_str(), O_WRONLY | O_APPEND | O_NOFOLLOW | O_CLOEXEC));
    undo.outcome = takeBack(*journal, *root, [&](std::uint64_t number, UndoResult result) {
        const std::string line = undoneLine(number, result);
        if (log && ::write(log.get(), line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
            // Not recorded: the next Undo finds the file restored, or as it was.
        }
    });
    if (log) ::fdatasync(log.get());
    if (!undo.outcome.complete()) return undo;  // taken again, for what is left
    try {
        AtomicFileWriter writer(folder + kUndoneFile, AtomicFileWriter::Attributes{0600, ::geteuid(), ::getegid(), -1});
        writer.write(std::to_string(undo.outcome.restored()) + "\t" + std::to_string(undo.outcome.left()) + "\n");
        writer.commit();
    } catch (const std::system_error&) {
        // Taken back all the same; another Undo of it would find every file settled.
    }
    return undo;
}

bool UndoJournal::giveBackOldest(const std::string& except) {
    if (hasSetAside()) {
        removeSetAside();
        return true;
    }
    for (const std::string& name : runNames()) {  // oldest first
        if (name == except) continue;
        const std::string run = folder_ + "/" + name;
        const std::optional<Journal> journal = readJournal(run + "/" + kJournalFile);
        if (journal && !journal->finishedNs) {
            // Being recorded by a process that still runs: not ours to take.
            const pid_t pid = static_cast<pid_t>(std::strtol(name.c_str() + name.find('-') + 1, nullptr, 10));
            if (pid > 0 && (::kill(pid, 0) == 0 || errno != ESRCH)) continue;
        }
        if (::rename(run.c_str(), (folder_ + "/" + kSetAsidePrefix + name).c_str()) != 0) continue;
        removeSetAside();
        return true;
    }
    return false;
}

std::vector<std::string> UndoJournal::elsewhereOf(const std::string& folder) const {
    std::vector<std::string> folders;
    std::string run = fs::path(folder).filename().string();
    if (run.starts_with(kSetAsidePrefix)) run.erase(0, kSetAsidePrefix.size());
    std::ifstream list(folder + "/" + kElsewhereFile);
    for (std::string line; std::getline(list, line);)
        if (const fs::path elsewhere(line); elsewhere.filename() == run &&
            isUndoFolderName(elsewhere.parent_path().filename().string()))
            folders.push_back(line);
    return folders;
}

void UndoJournal::prune() {
    if (runNames().size() <= keepRuns_) return;
    try {
        const FileDescriptor alone(lock(true));
        if (alone.get() < 0) return;  // a run is being recorded: next time
        const std::vector<std::string> names = runNames();
        for (std::size_t i = 0; i + keepRuns_ < names.size(); ++i)
            ::rename((folder_ + "/" + names[i]).c_str(), (folder_ + "/" + kSetAsidePrefix + names[i]).c_str());
    } catch (const std::system_error&) {
        // The journal's folder cannot be made or locked: nothing to set aside.
    }
}

std::vector<std::string> UndoJournal::setAside() const {
    std::vector<std::string> folders;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(folder_, ec))
        if (entry.path().filename().string().starts_with(kSetAsidePrefix)) folders.push_back(entry.path().string());
    return folders;
}

// Not in a journal that is not trusted: the folders elsewhere that it lists could be anyone's.
bool UndoJournal::hasSetAside() const { return !setAside().empty() && !refused(); }

void UndoJournal::removeSetAside() const {
    if (refused()) return;
    std::error_code ignored;
    for (const std::string& folder : setAside()) {
        for (const std::string& elsewhere : elsewhereOf(folder))
            if (!checkJournalFolder(elsewhere)) fs::remove_all(elsewhere, ignored);  // where nothing above can be swapped
        fs::remove_all(folder, ignored);
    }
}

std::uint64_t UndoJournal::spaceUsed() const {
    std::uint64_t bytes = 0;
    std::set<std::pair<dev_t, ino_t>> counted;
    auto add = [&](const fs::path& path) {
        struct stat st {};
        if (::lstat(path.c_str(), &st) == 0 && counted.insert({st.st_dev, st.st_ino}).second)
            bytes += static_cast<std::uint64_t>(st.st_blocks) * 512;
    };
    auto addTree = [&](const std::string& folder) {
        std::error_code ec;
        add(folder);
        for (auto it = fs::recursive_directory_iterator(folder, ec); !ec && it != fs::recursive_directory_iterator();
             it.increment(ec))
            add(it->path());
    };
    addTree(folder_);
    std::vector<std::string> folders = setAside();
    for (const std::string& run : runNames()) folders.push_back(folder_ + "/" + run);
    for (const std::string& folder : folders)
        for (const std::string& elsewhere : elsewhereOf(folder)) addTree(elsewhere);
    return bytes;
}

}  // namespace vantorel::history

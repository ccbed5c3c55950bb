// The writing pass of a Replace: what is written, where the old contents go,
// and what is refused, whatever the number of threads.

#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <mutex>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/ContentHash.h"
#include "files/FileFunctions.h"
#include "search/SearchRun.h"
#include "support/RecordingHost.h"
#include "support/Replacing.h"
#include "support/SystemCallFaults.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::RecordingHost;
using test::SystemCallFaults;
using test::Replaced;
using test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

Replaced replace(const TempTree& tree, RunRequest r, unsigned threads = 1,
                 std::function<void(const FileReport&)> onRow = nullptr) {
    RecordingHost host;
    host.onRow = std::move(onRow);
    r.startFolder = tree.root();
    r.threads = threads;
    return test::runReplace(r, host);
}

RunRequest job(std::string find, std::string replacement, std::string filter = "*.txt") {
    return test::replaceRequest("", std::move(find), std::move(replacement), std::move(filter));
}

TEST(ReplaceWriteTest, AFileReachedUnderSeveralNamesIsReplacedOnceUnderItsFirstName) {
    for (const unsigned threads : {1u, 4u}) {
        for (const bool marked : {false, true}) {
            TempTree tree;
            const std::string file = tree.write("f.txt", "foo");
            ASSERT_EQ(::link(file.c_str(), tree.path("h.txt").c_str()), 0);
            ASSERT_EQ(::symlink(file.c_str(), tree.path("l.txt").c_str()), 0);
            RunRequest r = job("foo", "foofoo");
            if (marked) {
                r.markedOnly = true;
                r.markedFiles = {file, tree.root() + "/./f.txt", tree.path("l.txt")};
            }
            const Replaced run = replace(tree, r, threads);
            EXPECT_EQ(tree.read("f.txt"), "foofoo") << threads << marked;
            EXPECT_THAT(run.messages, ElementsAre("1 files processed, 1 occurences changed in 1 file(s)"));
            ASSERT_EQ(run.rows.size(), 1u);
            EXPECT_EQ(run.rows[0].path, file);
        }
    }
}

TEST(ReplaceWriteTest, ABackupThatReplacesALaterListedFileGivesWhatOneThreadGives) {
    auto runWith = [](unsigned threads) {
        TempTree tree;
        for (int k = 0; k < 16; ++k) {
            tree.write("a" + std::to_string(k) + ".b.c", "cat b.c " + std::to_string(k));
            tree.write("a" + std::to_string(k) + ".bak", "cat bak " + std::to_string(k));
        }
        RunRequest r = job("cat", "dog", "*");
        r.makeBackups = true;
        const Replaced run = replace(tree, r, threads);
        EXPECT_EQ(tree.read("a0.bak"), "dog b.c 0");
        EXPECT_EQ(tree.read("a0.bak.bak"), "cat b.c 0");
        return std::make_pair(run.events, tree.snapshot());
    };
    EXPECT_EQ(runWith(1), runWith(4));
}

TEST(ReplaceWriteTest, EachRowSaysWhatBecameOfItsFileAndOnlyWhatWasWrittenCounts) {
    TempTree tree, elsewhere;
    tree.write("w.txt", "old");
    tree.write("ro.txt", "old", 0444);
    tree.write("bf.txt", "old");
    tree.mkdir("bf.bak");  // no backup can take this name
    const std::string outside = elsewhere.write("secret.txt", "old");
    ASSERT_EQ(::symlink(outside.c_str(), tree.path("out.txt").c_str()), 0);
    const std::string inside = tree.write("data/t.dat", "old");
    ASSERT_EQ(::symlink(inside.c_str(), tree.path("in.txt").c_str()), 0);
    RunRequest r = job("old", "new");
    r.makeBackups = true;
    const Replaced run = replace(tree, r);

    EXPECT_EQ(tree.read("w.txt"), "new");
    EXPECT_EQ(tree.read("w.bak"), "old");
    EXPECT_EQ(tree.read("data/t.dat"), "new");  // through a link that stays inside
    EXPECT_EQ(tree.read("data/t.bak"), "");     // the backup is beside the listed name
    EXPECT_EQ(tree.read("in.bak"), "old");
    EXPECT_EQ(tree.read("bf.txt"), "old");
    EXPECT_EQ(elsewhere.read("secret.txt"), "old");
    const std::string out = tree.path("out.txt"), bak = tree.path("bf.bak");
    EXPECT_THAT(run.messages,
                ElementsAre("Error deleting file " + bak, "Error creating .bak file: " + bak,
                            out + " is a link to a file outside the start folder; it was not changed.",
                            "5 files processed, 3 occurences changed in 3 file(s)\r\nWarning! 1 of the above "
                            "file(s) were Read-Only and their replacements were not saved."));
    std::vector<std::tuple<std::string, std::uint64_t, WriteStatus>> rows;
    for (const FileReport& row : run.rows) rows.emplace_back(FileNameOf(row.path), row.matches, row.write->status);
    using S = WriteStatus;
    EXPECT_THAT(rows, ElementsAre(std::tuple("bf.txt", 0, S::BackupFailed), std::tuple("in.txt", 1, S::Written),
                                  std::tuple("out.txt", 0, S::OutsideStartFolder), std::tuple("ro.txt", 1, S::ReadOnly),
                                  std::tuple("w.txt", 1, S::Written)));
    EXPECT_EQ(tree.read("ro.txt"), "old");
    const WriteOutcome& written = *run.rows.back().write;
    struct stat st {};
    ASSERT_EQ(::stat(tree.path("w.txt").c_str(), &st), 0);
    ContentHash hash;
    hash.add("new");
    EXPECT_EQ(written.path, tree.path("w.txt"));
    EXPECT_EQ(written.backup, tree.path("w.bak"));
    EXPECT_EQ(written.size, 3u);
    EXPECT_EQ(written.hash, hash.value());
    EXPECT_EQ(written.inode, st.st_ino);
    EXPECT_EQ(written.modifiedNs, st.st_mtim.tv_sec * 1000000000LL + st.st_mtim.tv_nsec);
    EXPECT_EQ(run.rows[1].write->path, inside);
}

TEST(ReplaceWriteTest, WithoutHardLinksTheBackupIsACopyAndTheFileNeverLosesItsName) {
    TempTree tree;
    tree.write("a.txt", "v1", 0640);
    tree.write("a.bak", "an older backup");
    tree.write("sub/b.txt", "v1");
    SystemCallFaults::Scope faults;
    SystemCallFaults::refuseLinks = true;
    std::vector<std::string> missing;
    SystemCallFaults::beforeRename = [&](const std::string&, const std::string& to) {
        for (const char* name : {"a.txt", "sub/b.txt"})
            if (!tree.exists(name)) missing.push_back(std::string(name) + " before the rename to " + to);
    };
    RunRequest r = job("v1", "v2");
    r.makeBackups = true;
    const Replaced run = replace(tree, r);
    EXPECT_THAT(missing, IsEmpty());
    EXPECT_EQ(tree.read("a.txt"), "v2");
    EXPECT_EQ(tree.read("a.bak"), "v1");
    EXPECT_EQ(tree.mode("a.bak"), 0640);
    EXPECT_EQ(tree.read("sub/b.bak"), "v1");
    EXPECT_THAT(run.messages, ElementsAre("2 files processed, 2 occurences changed in 2 file(s)"));
}

TEST(ReplaceWriteTest, AFileThatCannotBeWrittenIsReportedByItsNameAndTheRunGoesOn) {
    TempTree tree;
    const std::string longName = std::string(240, 'n') + ".txt";  // its temporary name would be too long
    tree.write(longName, "old");
    const std::string locked = tree.write("locked/a.txt", "old");
    tree.write("z.txt", "old");
    const bool refuses = tree.refuseNewFiles("locked");
    const Replaced run = replace(tree, job("old", "new"));
    EXPECT_EQ(tree.read(longName), "new");
    EXPECT_EQ(tree.read("z.txt"), "new");
    if (!refuses) GTEST_SKIP() << "no folder here refuses new files";
    EXPECT_EQ(tree.read("locked/a.txt"), "old");
    ASSERT_EQ(run.messages.size(), 2u);
    EXPECT_THAT(run.messages[0], ::testing::StartsWith("Error writing " + locked + "\r\n"));
    EXPECT_EQ(run.messages[1], "3 files processed, 2 occurences changed in 2 file(s)");
    RunRequest lockedOnly = job("old", "new", "a.txt");
    EXPECT_EQ(replace(tree, lockedOnly).messages.back(), "1 files processed, 0 occurences changed in 0 file(s)");
}

TEST(ReplaceWriteTest, EveryNewFileIsOnDiskWholeBeforeItTakesItsFilesName) {
    for (const bool backups : {false, true}) {  // flushed many at once, or one by one
        TempTree tree;
        for (int i = 0; i < 600; ++i)
            tree.write("d" + std::to_string(i % 3) + "/f" + std::to_string(i) + ".txt", "old " + std::to_string(i));
        tree.write("big.txt", "old" + std::string(9 << 20, '.'));  // past half the bytes that may wait
        SystemCallFaults::Scope faults;
        SystemCallFaults::watchFlushesUnder = tree.root();
        std::vector<std::string> unflushed;
        std::mutex mutex;
        SystemCallFaults::beforeRename = [&](const std::string& from, const std::string& to) {
            if (to.ends_with(".bak")) return;  // the old file taking its backup's name
            std::lock_guard lock(mutex);
            if (!SystemCallFaults::flushedAsItIs(from)) unflushed.push_back(from);
        };
        RunRequest r = job("old", "new");
        r.makeBackups = backups;
        const Replaced run = replace(tree, r, 2);
        EXPECT_THAT(unflushed, IsEmpty()) << "backups " << backups;
        EXPECT_EQ(run.messages.back(), "601 files processed, 601 occurences changed in 601 file(s)");
        for (int i = 0; i < 600; i += 7)
            EXPECT_EQ(tree.read("d" + std::to_string(i % 3) + "/f" + std::to_string(i) + ".txt"), "new " + std::to_string(i));
        EXPECT_EQ(tree.read("big.txt").substr(0, 4), "new.");
    }
}

TEST(ReplaceWriteTest, NewFilesTheDiskFailsToTakeReplaceNothing) {
    TempTree tree;
    for (const char* name : {"a.txt", "b.txt", "sub/c.txt"}) tree.write(name, "old");
    SystemCallFaults::Scope faults;
    SystemCallFaults::syncfsError = EIO;
    const Replaced run = replace(tree, job("old", "new"), 2);
    const std::string why = "\r\n" + systemErrorText(EIO);
    EXPECT_THAT(run.messages, ElementsAre("Error writing " + tree.path("a.txt") + why, "Error writing " + tree.path("b.txt") + why,
                                          "Error writing " + tree.path("sub/c.txt") + why,
                                          "3 files processed, 0 occurences changed in 0 file(s)"));
    for (const char* name : {"a.txt", "b.txt", "sub/c.txt"}) EXPECT_EQ(tree.read(name), "old");
    EXPECT_EQ(tree.snapshot().size(), 3u);  // no new file left behind
}

TEST(ReplaceWriteTest, Utf16FilesAreSearchedAndWrittenBackInUtf16WithTheirMark) {
    TempTree tree;
    // "café foo\r\n😀 foo" in UTF-16, each way round.
    const std::string le = std::string("\xff\xfe" "c\0a\0f\0\xe9\0 \0f\0o\0o\0\r\0\n\0\x3d\xd8\x00\xde \0f\0o\0o\0", 34);
    const std::string be = std::string("\xfe\xff\0c\0a\0f\0\xe9\0 \0f\0o\0o\0\r\0\n\xd8\x3d\xde\x00\0 \0f\0o\0o", 34);
    const std::string lone = std::string("\xff\xfe" "f\0o\0o\0\x00\xd8x\0", 12);  // a lone high surrogate
    tree.write("le.txt", le);
    tree.write("be.txt", be);
    tree.write("lone.txt", lone);
    SearchState state;
    RecordingHost host;
    RunRequest find = job("foo", "");
    find.kind = RunKind::Find;
    find.startFolder = tree.root();
    std::string previewed;
    std::mutex previewing;  // the files are read on several threads
    find.previewSection = [&](const std::string&, std::string_view text, TextEncoding encoding, const CompiledPattern&) {
        std::lock_guard lock(previewing);
        if (previewed.empty() && encoding == TextEncoding::Utf8) previewed = text;
        return StyledText{};
    };
    RunSearch(find, state, host);
    ASSERT_EQ(host.rows.size(), 3u);
    EXPECT_EQ(host.rows[0].matches, 2u);
    EXPECT_EQ(host.rows[0].characters, 16u);  // the mark is a character, the emoji one more
    EXPECT_EQ(host.rows[2].matches, 1u);
    EXPECT_EQ(previewed, "\xef\xbb\xbf" "caf\xc3\xa9 foo\r\n\xf0\x9f\x98\x80 foo");

    RunRequest r = job("f(o+)", "b$1\xc3\xa4r");
    r.regularExpression = true;
    const Replaced run = replace(tree, r);
    auto swapped = [](std::string text, const std::string& from, const std::string& to) {
        for (std::size_t at; (at = text.find(from)) != std::string::npos;) text.replace(at, from.size(), to);
        return text;
    };
    EXPECT_EQ(tree.read("le.txt"), swapped(le, std::string("f\0o\0o\0", 6), std::string("b\0o\0o\0\xe4\0r\0", 10)));
    EXPECT_EQ(tree.read("be.txt"), swapped(be, std::string("\0f\0o\0o", 6), std::string("\0b\0o\0o\0\xe4\0r", 10)));
    EXPECT_EQ(tree.read("lone.txt"), lone);
    EXPECT_EQ(run.messages[0], tree.path("lone.txt") +
                                   " is UTF-16 text with code units that are not characters; it was not changed.");
}

}  // namespace
}  // namespace vantorel

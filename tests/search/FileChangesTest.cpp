// What a Replace would change, shown before writing: the lines shown must
// make, from the file as it is, exactly the bytes that the write gives.

#include <unistd.h>

#include <ctime>
#include <fstream>
#include <optional>
#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/FolderSync.h"
#include "search/FileChanges.h"
#include "search/FileProcessor.h"
#include "files/FileText.h"
#include "search/WriteBack.h"
#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::TempTree;

// Applies hunks to a text as `patch` would, failing on any line that does not match.
std::string applyHunks(std::string_view old, const std::vector<ChangeHunk>& hunks) {
    std::vector<std::string_view> lines;
    for (std::size_t at = 0; at < old.size();) {
        const std::size_t end = std::min(old.find('\n', at), old.size() - 1) + 1;
        lines.push_back(old.substr(at, end - at));
        at = end;
    }
    std::string out;
    std::size_t next = 0;  // the next old line to copy
    for (const ChangeHunk& hunk : hunks) {
        const std::size_t first = hunk.oldCount == 0 ? hunk.oldStart : hunk.oldStart - 1;
        EXPECT_GE(first, next);
        for (; next < first; ++next) out += lines.at(next);
        for (const ChangedLine& line : hunk.lines) {
            if (line.kind != ChangedLine::Kind::Added) {
                EXPECT_EQ(line.text, lines.at(next)) << "line " << next + 1;
                ++next;
            }
            if (line.kind != ChangedLine::Kind::Removed) out += line.text;
        }
    }
    for (; next < lines.size(); ++next) out += lines[next];
    return out;
}

// What the write puts in the file, and what the preview says it will be.
std::pair<std::string, std::string> writtenAndPreviewed(const TempTree& tree, const std::string& bytes,
                                                        const std::vector<CompiledJob>& jobs) {
    const std::string path = tree.write("f.txt", bytes);
    FileText::Result read = FileText::read(path);
    const WriteSettings settings;
    const FileChanges changes = previewChanges(path, read.text, jobs, settings, ChangeLines::FileBytes);
    const std::string previewed = applyHunks(bytes, changes.hunks);
    PreparedWrite prepared = prepareWriteBack(path, read.text, jobs, settings, nullptr);
    if (prepared.pending) {
        std::vector<Message> messages;
        FolderSync folders;
        prepared.pending->commit(messages, folders);
    }
    return {tree.read("f.txt"), previewed};
}

TEST(ChangePreviewTest, ThePreviewGivesTheWrittenBytesOnEveryRegexCase) {
    std::ifstream in(VANTOREL_TEST_DATA "/regex-cases.json");
    const nlohmann::json fixture = nlohmann::json::parse(in);
    TempTree tree(::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp");  // thousands of writes: in memory where we can
    std::size_t checked = 0;
    for (const auto& c : fixture["cases"]) {
        if (!c.contains("template")) continue;
        std::vector<CompiledJob> jobs;
        try {
            jobs.emplace_back(c["pattern"].get<std::string>(), c["template"].get<std::string>(),
                              c["ignoreCase"].get<bool>());
        } catch (const PatternError&) {
            continue;
        }
        const std::string subject = c["subject"];
        // On several lines too, ended in both ways, the last without a break.
        std::vector<std::string> texts{subject, subject + "\r\n" + subject + "\n\n" + subject};
        if (c.value("singleByte", false))
            for (std::size_t i = 0, n = texts.size(); i < n; ++i) texts.push_back(*utf8ToWindows1252(texts[i]));
        for (const std::string& text : texts) {
            const auto [written, previewed] = writtenAndPreviewed(tree, text, jobs);
            ASSERT_EQ(previewed, written) << c.dump();
            ++checked;
        }
    }
    EXPECT_GT(checked, 2000u);
}

TEST(ChangePreviewTest, ThePreviewGivesTheWrittenBytesOfEveryEncodingAndOfJobsInTurn) {
    TempTree tree;
    const std::vector<std::pair<std::string, std::vector<std::pair<std::string, std::string>>>> cases = {
        {"caf\xe9 cat\r\nno\r\ncat caf\xe9\r\n", {{"caf\xc3\xa9", "bistro"}, {"cat", "d\xc3\xb6g"}}},
        {std::string("\xff\xfe" "c\0a\0t\0\n\0x\0\n\0c\0a\0t\0", 20), {{"cat", "line\\nbreak"}}},
        {std::string("\xfe\xff\0c\0a\0t\0\r\0\n\0\x0a\x05", 16), {{"cat", "\xe0\xa8\x85"}, {"\xe0\xa8\x85", "x"}}},
        {"1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n13\n14\n15\n", {{"^(4|5|13)\\n", ""}, {"^8$", "eight\\n8"}}},
        {"a\nb\nc", {{"c$", "c\\n"}, {"^", "> "}}},
        {"tail\n", {{"$(?![^]*\\n)", "end"}}},
    };
    for (const auto& [bytes, steps] : cases) {
        std::vector<CompiledJob> jobs;
        for (const auto& [find, replacement] : steps) jobs.emplace_back(find, replacement, false);
        const auto [written, previewed] = writtenAndPreviewed(tree, bytes, jobs);
        EXPECT_NE(written, bytes);
        EXPECT_EQ(previewed, written) << bytes;
    }
}

TEST(ChangePreviewTest, DecodedLinesShowTheReplacedTextAndTheDiffReadsAsAUnifiedDiff) {
    TempTree tree;
    const std::string path = tree.write("f.txt", "1\n2\n3\n4 caf\xe9\n5\n6\n7\n8\n9\n10\n11 caf\xe9\n12\n13\n14\n15\n16\n17\n18\n19 caf\xe9");
    const FileText::Result read = FileText::read(path);
    const std::vector<CompiledJob> jobs{{"caf\xc3\xa9", "bar", false}};
    const FileChanges changes = previewChanges(path, read.text, jobs, WriteSettings{}, ChangeLines::Decoded);
    EXPECT_EQ(changes.matches, 3u);
    EXPECT_EQ(changes.encoding, TextEncoding::Windows1252);
    EXPECT_EQ(unifiedDiff({"f.txt", changes.modifiedNs}, {"f.txt", 7}, changes.hunks),
              "--- f.txt\t" + diffTime(changes.modifiedNs) + "\n+++ f.txt\t" + diffTime(7) + "\n"
              "@@ -1,14 +1,14 @@\n 1\n 2\n 3\n-4 caf\xc3\xa9\n+4 bar\n 5\n 6\n 7\n 8\n 9\n 10\n-11 caf\xc3\xa9\n+11 bar\n 12\n 13\n 14\n"
              "@@ -16,4 +16,4 @@\n 16\n 17\n 18\n-19 caf\xc3\xa9\n\\ No newline at end of file\n+19 bar\n\\ No newline at end of file\n");
    const std::string lines = tree.write("g.txt", "a\nb\nc\n");
    const std::vector<CompiledJob> dropB{{"^b\\n", "", false}};
    EXPECT_EQ(unifiedDiff({"g.txt", 0}, {"g.txt", 0}, previewChanges(lines, FileText::read(lines).text, dropB,
                                                                   WriteSettings{}, ChangeLines::FileBytes).hunks),
              "--- g.txt\t" + diffTime(0) + "\n+++ g.txt\t" + diffTime(0) + "\n@@ -1,3 +1,2 @@\n a\n-b\n c\n");
    const ChangedLine& removed = changes.hunks[0].lines[3];
    const ChangedLine& added = changes.hunks[0].lines[4];
    EXPECT_EQ(removed.marks, (std::vector<std::pair<std::uint32_t, std::uint32_t>>{{2, 7}}));
    EXPECT_EQ(added.marks, (std::vector<std::pair<std::uint32_t, std::uint32_t>>{{2, 5}}));
}

TEST(ChangePreviewTest, TimesInTheDiffAreLocalWithTheirNanosecondsAndZone) {
    const struct {
        const char* zone;
        std::int64_t ns;
        std::string written;
    } cases[] = {
        {"UTC0", 0, "1970-01-01 00:00:00.000000000 +0000"},
        {"UTC-1", 1000000007, "1970-01-01 01:00:01.000000007 +0100"},
        {"UTC-1", -1, "1970-01-01 00:59:59.999999999 +0100"},
        {"UTC+2:30", 1764000000123456789, "2025-11-24 13:30:00.123456789 -0230"},
    };
    for (const auto& c : cases) {
        std::optional<test::ScopedEnvironment> zone(std::in_place, "TZ", c.zone);
        ::tzset();
        const std::string written = diffTime(c.ns);
        zone.reset();
        ::tzset();
        EXPECT_EQ(written, c.written) << c.zone;
    }
}

TEST(ChangePreviewTest, NamesInTheDiffAreQuotedAsGnuDiffQuotesThem) {
    const struct {
        std::string name, written;
    } cases[] = {
        {"sub/plain-name_1.txt", "sub/plain-name_1.txt"},
        {"#@:*?'~$\x7f", "#@:*?'~$\x7f"},  // DEL is left as it is
        {"a b", "\"a b\""},
        {"say \"hi\"\\", "\"say \\\"hi\\\"\\\\\""},
        {"\a\b\t\n\v\f\r", "\"\\a\\b\\t\\n\\v\\f\\r\""},
        {"\x01\x1b[0m", "\"\\001\\033[0m\""},
        {"caf\xc3\xa9\xff", "\"caf\\303\\251\\377\""},
    };
    for (const auto& c : cases) EXPECT_EQ(diffFileName(c.name), c.written) << c.name;
}

}  // namespace
}  // namespace vantorel

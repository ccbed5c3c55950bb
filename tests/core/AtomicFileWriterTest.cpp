#include "core/AtomicFileWriter.h"

#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <system_error>

#include <gtest/gtest.h>

#include "support/CommandOutput.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::TempTree;

void replaceWith(const std::string& file, const std::string& text) {
    AtomicFileWriter writer(file);
    writer.write(text);
    writer.commit();
}

TEST(AtomicFileWriterTest, ReplacesTheFileWholeOrNotAtAllAndNamesItInErrors) {
    TempTree tree;
    const std::string file = tree.write("script.sh", "old contents that are long", 0751);
    {
        AtomicFileWriter writer(file);
        writer.write("new");
        writer.write(std::string(3 << 20, 'x'));  // more than the buffer holds
        writer.finish();
        EXPECT_EQ(tree.read("script.sh"), "old contents that are long");  // until the commit
        EXPECT_EQ(tree.names(), std::vector<std::string>{"script.sh"});   // the new file has no name yet
        writer.commit();
    }
    {
        AtomicFileWriter writer(file);
        writer.write("never committed");
        writer.finish();
    }
    EXPECT_EQ(tree.read("script.sh"), "new" + std::string(3 << 20, 'x'));
    EXPECT_EQ(tree.mode("script.sh"), 0751);
    EXPECT_EQ(tree.names(), std::vector<std::string>{"script.sh"});
    try {
        AtomicFileWriter writer("/no/such/folder/file.txt");
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(std::string(error.what()), "/no/such/folder/file.txt: No such file or directory");
    }
}

TEST(AtomicFileWriterTest, KeepsOwnerGroupSpecialBitsAclAndExtendedAttributes) {
    TempTree tree;
    tree.mkdir("shared");
    const std::string withAcl = tree.write("shared/tool", "v1", 06750);
    const std::string plain = tree.write("shared/plain.txt", "v1", 0640);
    const bool root = ::geteuid() == 0;
    if (root) ASSERT_EQ(::chown(withAcl.c_str(), 65534, 65534), 0);  // another user's file
    ASSERT_EQ(::chmod(withAcl.c_str(), 06750), 0);
    const bool attributes = ::setxattr(withAcl.c_str(), "user.origin", "here", 4, 0) == 0;
    // New files in the folder get an ACL of their own; the old ones have theirs or none.
    const bool acls = test::commandOutput("setfacl -m u:65534:rw " + withAcl + " && setfacl -d -m u:65534:rwx " +
                             tree.path("shared")).has_value();
    const auto aclOf = [](const std::string& file) { return test::commandOutput("getfacl -c " + file).value_or("none"); };
    const std::string aclBefore = aclOf(withAcl), plainAclBefore = aclOf(plain);
    const int modeBefore = tree.mode("shared/tool");  // the ACL's mask is the group's part
    ASSERT_EQ(modeBefore & 06000, 06000);

    replaceWith(withAcl, "v2");
    replaceWith(plain, "v2");

    struct stat st {};
    ASSERT_EQ(::stat(withAcl.c_str(), &st), 0);
    EXPECT_EQ(static_cast<int>(st.st_mode & 07777), modeBefore);
    if (root) EXPECT_EQ(st.st_uid, 65534u);
    if (root) EXPECT_EQ(st.st_gid, 65534u);
    EXPECT_EQ(tree.mode("shared/plain.txt"), 0640);
    if (attributes) {
        char value[16] = {};
        EXPECT_EQ(::getxattr(withAcl.c_str(), "user.origin", value, sizeof value), 4);
        EXPECT_STREQ(value, "here");
    }
    if (!acls) GTEST_SKIP() << "this file system keeps no ACLs";
    EXPECT_EQ(aclOf(withAcl), aclBefore);
    EXPECT_EQ(aclOf(plain), plainAclBefore);
}

TEST(AtomicFileWriterTest, ClearsOnlyTheTemporaryFilesItsOwnUserLeftWhenTheirProcessIsGone) {
    TempTree tree;
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    ::waitpid(child, nullptr, 0);
    const std::string dead = std::to_string(child);
    const std::string left = ".vantorel-" + dead + "-1";               // a killed run's: cleared
    const std::string running = ".vantorel-1-2";                       // process 1 runs, and started first
    const std::string reused = ".vantorel-1-3";                        // written before process 1 started
    const std::string ours = ".vantorel-" + std::to_string(::getpid()) + "-4";
    const std::string lookalike = ".vantorel-" + dead + "-1-notes.txt";  // a user's own names
    const std::string draft = ".vantorel-" + dead + "-0-draft";
    const std::string linked = ".vantorel-" + dead + "-5";              // has another name
    const std::string foreign = ".vantorel-" + dead + "-6";             // another user's
    for (const std::string& name : {left, running, reused, ours, lookalike, draft, linked, foreign})
        tree.write(name, "left over");
    ASSERT_EQ(::link(tree.path(linked).c_str(), tree.path("kept-link").c_str()), 0);
    const timeval longAgo[2] = {{315532800, 0}, {315532800, 0}};  // 1980
    ASSERT_EQ(::utimes(tree.path(reused).c_str(), longAgo), 0);
    const bool otherUser = ::geteuid() == 0 && ::chown(tree.path(foreign).c_str(), 65534, 65534) == 0;
    replaceWith(tree.path("a.txt"), "new");
    std::vector<std::string> expected{draft,  lookalike, running, linked, ours, "a.txt", "kept-link"};
    if (otherUser) expected.push_back(foreign);
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(tree.names(), expected);
}

}  // namespace
}  // namespace vantorel

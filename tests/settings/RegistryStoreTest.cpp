#include "settings/RegistryStore.h"

#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <csignal>

#include "settings/RegistryFile.h"
#include "support/ScopedEnvironment.h"
#include "support/ScriptedMessages.h"
#include "support/SystemCallFaults.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

namespace fs = std::filesystem;
using test::ScriptedMessages;
using test::TempTree;

const KeyPath kKey{HKEY_CURRENT_USER, {"Software", "Brimlark", "Vantorel"}};

std::string sz(const std::string& text) { return text + '\0'; }

TEST(RegistryStore, TheFileFollowsTheEnvironment) {
    const struct {
        const char *own, *xdg, *file;  // VANTOREL_CONFIG_HOME, XDG_CONFIG_HOME (HOME is /home/u)
    } cases[] = {{"/tmp/t1", "/x/cfg", "/tmp/t1/settings.reg"}, {nullptr, "/x/cfg", "/x/cfg/vantorel/settings.reg"},
                 {"", "/x/cfg", "/x/cfg/vantorel/settings.reg"},
                 {nullptr, "rel/cfg", "/home/u/.config/vantorel/settings.reg"},
                 {nullptr, nullptr, "/home/u/.config/vantorel/settings.reg"}};
    test::ScopedEnvironment env("HOME", "/home/u");
    for (const auto& c : cases) {
        env.set("VANTOREL_CONFIG_HOME", c.own);
        env.set("XDG_CONFIG_HOME", c.xdg);
        EXPECT_EQ(RegistryStore::defaultFile(), fs::path(c.file));
    }
}

TEST(RegistryStore, ChangesReachTheFileOnlyWhenFlushed) {
    TempTree folder;
    const fs::path file = folder.path("cfg/settings.reg");  // the folder is made on the first write
    {
        RegistryStore store(file);
        ASSERT_EQ(store.createKey(kKey), RegistryTree::CreateResult::Created);
        ASSERT_TRUE(store.setValue(kKey, "Find0", REG_SZ, sz("needle")));
        EXPECT_FALSE(fs::exists(file));
        test::SystemCallFaults::Scope faults;
        test::SystemCallFaults::watchSyncs = true;
        ASSERT_TRUE(store.flush());
        // The rename into place is made durable, once.
        EXPECT_EQ(test::SystemCallFaults::syncedFolders(), std::vector<std::string>{file.parent_path().string()});
        EXPECT_EQ(folder.names("cfg"), (std::vector<std::string>{"settings.reg", "settings.reg.lock"}));
        EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    }
    RegistryStore again(file);
    EXPECT_EQ(again.value(kKey, "find0")->data, sz("needle"));
    EXPECT_FALSE(again.setValue(KeyPath{HKEY_CURRENT_USER, {"Nope"}}, "a", REG_SZ, sz("b")));
    EXPECT_FALSE(again.setValue(kKey, "bad\nname", REG_SZ, sz("b")));
    EXPECT_FALSE(again.createKey(KeyPath{HKEY_CURRENT_USER, {"a\\b"}}));
    EXPECT_TRUE(again.createKey(KeyPath{HKEY_CURRENT_USER, std::vector<std::string>(kMaxKeyDepth, "k")}));
    EXPECT_FALSE(again.createKey(KeyPath{HKEY_CURRENT_USER, std::vector<std::string>(kMaxKeyDepth + 1, "k")}));
}

// Fails the rename that would move a damaged store file aside.
class FailingRenameStore : public RegistryStore {
public:
    using RegistryStore::RegistryStore;
    bool failAside = false;

protected:
    std::error_code renameFile(const fs::path& from, const fs::path& to) override {
        if (failAside) return std::make_error_code(std::errc::io_error);
        return RegistryStore::renameFile(from, to);
    }
};

TEST(RegistryStore, AWriteCutShortByTheFileSizeLimitLeavesTheOldFileWhole) {
    TempTree folder;
    const fs::path file = folder.path("settings.reg");
    RegistryStore store(file);
    store.createKey(kKey);
    store.setValue(kKey, "Find0", REG_SZ, sz("old"));
    ASSERT_TRUE(store.flush());
    const std::string old = folder.read("settings.reg");
    store.setValue(kKey, "Big", REG_BINARY, std::string(20000, '\x5a'));

    rlimit saved{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &saved), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = saved;
    small.rlim_cur = 4096;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool flushed = store.flush();
    ::setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, oldHandler);

    EXPECT_FALSE(flushed);
    EXPECT_NE(store.lastError().find("cannot be written"), std::string::npos) << store.lastError();
    EXPECT_EQ(folder.read("settings.reg"), old);
    EXPECT_EQ(folder.names(), (std::vector<std::string>{"settings.reg", "settings.reg.lock"}));
    ASSERT_TRUE(store.flush());
}

TEST(RegistryStore, TwoInstancesKeepEachOthersChanges) {
    TempTree folder;
    const fs::path file = folder.path("settings.reg");
    RegistryStore first(file);
    RegistryStore second(file);
    first.createKey(kKey);
    second.createKey(kKey);
    first.setValue(kKey, "FromFirst", REG_SZ, sz("1"));
    first.setValue(kKey, "Both", REG_SZ, sz("first"));
    second.setValue(kKey, "FromSecond", REG_SZ, sz("2"));
    second.setValue(kKey, "Both", REG_SZ, sz("second"));
    ASSERT_TRUE(first.flush());
    // Reading the newer file keeps the changes not yet written on top; the last writer wins.
    for (RegistryStore* reader : {&second, &first}) {
        reader->refresh();
        EXPECT_EQ(reader->value(kKey, "FromFirst")->data, sz("1"));
        EXPECT_EQ(reader->value(kKey, "FromSecond")->data, sz("2"));
        EXPECT_EQ(reader->value(kKey, "Both")->data, sz("second"));
        ASSERT_TRUE(reader->flush());
    }
}

// Store files that cannot be used: each is kept aside whole, reported once,
// and the program goes on with an empty store that saves normally.
TEST(RegistryStore, ADamagedFileIsKeptAsideWithOneMessage) {
    RegistryTree valid;
    valid.createKey(kKey);
    valid.setValue(kKey, "Find0", REG_SZ, sz("needle"));
    valid.setValue(kKey, "Blob", REG_BINARY, std::string(100, '\x01'));
    const std::string text = RegistryFile::format(valid);
    const struct {
        std::string content;
        const char* says;  // part of the message
        bool folder = false;
    } cases[] = {{"\x89PNG\r\n\x1a\n not settings at all", "is damaged (line 1"},
                 {text.substr(0, text.find("needle") + 3), "a string has no closing quote"},
                 {std::string("\xFF\xFE[\0H\0", 6), "UTF-16"}, {"", "is damaged"}, {"", "is a folder", true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.says);
        const bool folder = c.folder;
        TempTree tree;
        const fs::path file = tree.path("settings.reg");
        tree.write(folder ? "settings.reg/inside" : "settings.reg", folder ? "x" : c.content);
        ScriptedMessages host;
        RegistryStore store(file, &host);
        EXPECT_FALSE(store.keyExists(kKey));

        ASSERT_EQ(host.messages.size(), 1u);
        const Message& message = host.messages[0];
        EXPECT_EQ(message.icon, MessageIcon::Warning);
        EXPECT_EQ(message.kind, MessageKind::FileError);
        EXPECT_NE(message.text.find(file.string()), std::string::npos) << message.text;
        EXPECT_NE(message.text.find(c.says), std::string::npos) << message.text;
        EXPECT_NE(message.text.find("kept as"), std::string::npos) << message.text;

        EXPECT_FALSE(fs::exists(file));
        const auto names = tree.names();
        ASSERT_EQ(names.size(), 1u);
        EXPECT_TRUE(names[0].starts_with("settings.reg.damaged-")) << names[0];
        const std::string aside = names[0] + (folder ? "/inside" : "");
        EXPECT_EQ(tree.read(aside), folder ? "x" : c.content);

        // The program goes on: it saves into a new file, and says nothing more.
        ASSERT_TRUE(store.createKey(kKey));
        ASSERT_TRUE(store.setValue(kKey, "Find0", REG_SZ, sz("fresh")));
        ASSERT_TRUE(store.flush());
        store.refresh();
        EXPECT_EQ(host.messages.size(), 1u);
        EXPECT_EQ(tree.read(aside), folder ? "x" : c.content);
        EXPECT_EQ(RegistryStore(file).value(kKey, "Find0")->data, sz("fresh"));
    }
}

TEST(RegistryStore, ADamagedFileThatCannotBeMovedIsNeverWrittenOver) {
    TempTree folder;
    const fs::path file = folder.path("settings.reg");
    const std::string damaged = "not a settings file";
    folder.write("settings.reg", damaged);
    ScriptedMessages host;
    FailingRenameStore store(file, &host);
    store.failAside = true;

    EXPECT_FALSE(store.keyExists(kKey));
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_NE(host.messages[0].text.find("could not be moved aside"), std::string::npos) << host.messages[0].text;

    ASSERT_TRUE(store.createKey(kKey));
    EXPECT_FALSE(store.flush());
    EXPECT_NE(store.lastError().find("not written over"), std::string::npos);
    store.refresh();
    EXPECT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(folder.read("settings.reg"), damaged);
}

}  // namespace
}  // namespace vantorel

#include "settings/CRegistry.h"

#include <gtest/gtest.h>

#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

using test::TempTree;

const std::string kVantorel = "HKEY_CURRENT_USER\\Software\\Brimlark\\Vantorel";
const KeyPath kVantorelKey{HKEY_CURRENT_USER, {"Software", "Brimlark", "Vantorel"}};
const std::string kNul(1, '\0');

class CRegistryTest : public ::testing::Test {
protected:
    CRegistryTest() : store(folder.path("settings.reg")), reg(store) {
        store.createKey(kVantorelKey);
        store.flush();
    }
    TempTree folder;
    RegistryStore store;
    CRegistry reg;
};

TEST_F(CRegistryTest, OpensOnlyFullRootNamesAndExistingKeys) {
    const struct {
        const char* path;
        bool opens;
        const char* currentKey;
    } cases[] = {{"HKEY_CURRENT_USER", true, "HKEY_CURRENT_USER"}, {"HKEY_CURRENT_USER\\", true, ""},
                 {"HKEY_LOCAL_MACHINE", true, "HKEY_LOCAL_MACHINE"},
                 {"HKEY_CURRENT_USER\\Software\\Brimlark\\Vantorel", true, "Vantorel"},
                 {"HKEY_CURRENT_USER\\software\\BRIMLARK\\vantorel", true, "vantorel"},  // subkeys ignore case
                 {"HKCU", false, ""}, {"HKCU\\Software\\Brimlark\\Vantorel", false, ""},
                 {"hkey_current_user\\Software", false, ""}, {"HKEY_CURRENT_USER\\Software\\Nobody", false, ""},
                 {"HKEY_CURRENT_USER\\Software\\\\Brimlark", false, ""}, {"", false, ""}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        ASSERT_TRUE(reg.OpenKey(kVantorel));
        ASSERT_TRUE(reg.WriteString("before", "Probe"));
        EXPECT_EQ(reg.OpenKey(c.path), c.opens);
        if (c.opens) {
            EXPECT_EQ(reg.CurrentPath(), c.path);
            EXPECT_EQ(reg.CurrentKey(), c.currentKey);
            EXPECT_TRUE(reg.WriteString("x", "Probe"));
            continue;
        }
        // The key opened before was closed: nothing can be read or written.
        EXPECT_EQ(reg.ReadString("Probe"), "");
        EXPECT_FALSE(reg.WriteString("x", "Probe"));
        long type = -1, size = -1;
        EXPECT_FALSE(reg.GetValueInfo("Probe", type, size));
        EXPECT_EQ(type, 0);
        EXPECT_EQ(size, 0);
    }
}

TEST_F(CRegistryTest, CreateKeyIsTrueOnlyForANewKeyLeavesItClosedAndWorksBelowTheOpenKey) {
    const std::string path = "HKEY_CURRENT_USER\\Software\\Brimlark\\Other";
    EXPECT_TRUE(reg.CreateKey(path));
    EXPECT_TRUE(reg.KeyExists(path));
    EXPECT_FALSE(reg.WriteString("x", "Probe"));  // not left open
    EXPECT_FALSE(reg.CreateKey(path));            // exists now
    EXPECT_FALSE(reg.CreateKey(kVantorel));
    EXPECT_FALSE(reg.CreateKey("HKEY_CURRENT_USER"));

    // Already in the file: another store sees it without any further step.
    RegistryStore other(store.file());
    EXPECT_TRUE(CRegistry(other).KeyExists(path));

    // Without a root name, below the key that is open.
    EXPECT_FALSE(reg.CreateKey("Sub\\Deeper"));  // no key open
    ASSERT_TRUE(reg.OpenKey("HKEY_CURRENT_USER\\Software"));
    EXPECT_TRUE(reg.CreateKey("Sub\\Deeper"));
    EXPECT_TRUE(reg.KeyExists("HKEY_CURRENT_USER\\Software\\Sub\\Deeper"));
    EXPECT_FALSE(reg.CreateKey("HKCU\\X\\\\Y"));  // unknown root taken as a name, but an empty name
}

TEST_F(CRegistryTest, EmptyStringsAndMissingValues) {
    ASSERT_TRUE(reg.OpenKey(kVantorel));
    EXPECT_EQ(reg.ReadString("Missing"), "");

    ASSERT_TRUE(reg.WriteString("", "Empty"));
    EXPECT_EQ(reg.ReadString("Empty"), kNul);
    EXPECT_EQ(store.value(kVantorelKey, "Empty")->data, std::string(2, '\0'));

    ASSERT_TRUE(reg.WriteString(kNul, "Nul"));  // a lone NUL written back stays a lone NUL
    EXPECT_EQ(reg.ReadString("Nul"), kNul);

    ASSERT_TRUE(reg.WriteString("abc", "Text"));
    EXPECT_EQ(reg.ReadString("Text"), "abc");
}

// The part kept for the published interface only, once over: numbers keep
// their byte order, expandable strings expand, keys and values rename and go.
TEST_F(CRegistryTest, CompatibilityMethodsStillWork) {
    ASSERT_TRUE(reg.CreateKey(kVantorel + "\\Jobs\\One"));
    ASSERT_TRUE(reg.OpenKey(kVantorel + "\\Jobs"));
    ASSERT_TRUE(reg.WriteBigEndian(0x01020304, "Big"));
    EXPECT_EQ(reg.ReadBinary("Big"), (std::vector<unsigned char>{1, 2, 3, 4}));
    EXPECT_EQ(reg.ReadInteger("Big"), 0);  // not a REG_DWORD
    ASSERT_TRUE(reg.WriteInteger(-5, "Int"));  // back to REG_DWORD
    EXPECT_EQ(reg.ReadInteger("Int"), -5);
    test::ScopedEnvironment env("VANTOREL_REGISTRY_TEST", "/opt/x");
    ASSERT_TRUE(reg.WriteEnvironmentString("%VANTOREL_REGISTRY_TEST% 100%% %NO_SUCH_VARIABLE_HERE%", "Env"));
    EXPECT_EQ(reg.ReadEnviromentString("Env"), "/opt/x 100% %NO_SUCH_VARIABLE_HERE%");
    std::vector<std::string> names;
    std::vector<long> types;
    ASSERT_TRUE(reg.EnumerateValues(names, types));
    EXPECT_EQ(names, (std::vector<std::string>{"Big", "Int", "Env"}));
    EXPECT_EQ(types, (std::vector<long>{CRegistry::BigEndian, CRegistry::Integer, CRegistry::ExpandString}));
    EXPECT_TRUE(reg.RenameValue("Int", "Renamed"));
    EXPECT_FALSE(reg.ValueExists("Int"));
    EXPECT_TRUE(reg.RenameKey(kVantorel + "\\Jobs", "Tasks"));
    EXPECT_TRUE(reg.KeyExists(kVantorel + "\\Tasks\\One"));
    EXPECT_TRUE(reg.DeleteKey(kVantorel + "\\Tasks"));
    EXPECT_FALSE(reg.KeyExists(kVantorel + "\\Tasks"));
    EXPECT_FALSE(reg.SaveKey(kVantorel, folder.path("hive")));
}

TEST_F(CRegistryTest, ClosingTheKeyWritesTheFile) {
    ASSERT_TRUE(reg.OpenKey(kVantorel));
    ASSERT_TRUE(reg.WriteString("kept", "Find0"));
    EXPECT_TRUE(store.hasUnsavedChanges());
    reg.CloseKey();
    EXPECT_FALSE(store.hasUnsavedChanges());
    EXPECT_NE(folder.read("settings.reg").find("\"Find0\"=\"kept\""), std::string::npos);
}

}  // namespace
}  // namespace vantorel

#include "settings/RegistryFile.h"

#include <gtest/gtest.h>

namespace vantorel {
namespace {

const KeyPath kKey{HKEY_CURRENT_USER, {"Software", "Brimlark", "Vantorel"}};

std::string header() { return std::string(RegistryFile::kHeader) + "\n\n"; }

// Every kind of value must come back byte for byte after format and parse.
TEST(RegistryFile, EveryValueComesBackUnchanged) {
    const struct {
        std::string name;
        std::uint32_t type;
        std::string data;
        const char* line;  // how it appears in the text, when it matters
    } cases[] = {
        {"Find0", REG_SZ, std::string("abc\0", 4), "\"Find0\"=\"abc\""},
        {"Dir0", REG_SZ, std::string("C:\\a \"b\"\\\0", 10), R"("Dir0"="C:\\a \"b\"\\")"},
        {"E", REG_SZ, std::string("\0", 1), "\"E\"=\"\""},
        {"Find3", REG_SZ, std::string("\0\0", 2), "\"Find3\"=hex(1):00,00"},
        {"L", REG_SZ, std::string("a\r\nb\0", 5), "\"L\"=hex(1):61,0d,0a,62,00"},
        {"W", REG_SZ, std::string("caf\xE9\0", 5), "\"W\"=hex(1):63,61,66,e9,00"},
        {"U", REG_SZ, std::string("caf\xC3\xA9\0", 6), "\"U\"=\"caf\xC3\xA9\""},
        {"N", REG_SZ, "ab", "\"N\"=hex(1):61,62"},
        {"", REG_SZ, std::string("d\0", 2), "@=\"d\""},
        {"D", REG_DWORD, std::string("\x0a\x00\x00\x80", 4), "\"D\"=dword:8000000a"},
        {"D3", REG_DWORD, std::string("\x01\x02", 2), "\"D3\"=hex(4):01,02"},
        {"X", REG_EXPAND_SZ, std::string("%HOME%\0", 7), "\"X\"=hex(2):25,48,4f,4d,45,25,00"},
        {"M", REG_MULTI_SZ, std::string("a\0b\0\0", 5), "\"M\"=hex(7):61,00,62,00,00"},
        {"B", REG_BINARY, std::string("\x00\xff", 2), "\"B\"=hex:00,ff"},
        {"B0", REG_BINARY, "", "\"B0\"=hex:"},
        {"BE", REG_DWORD_BIG_ENDIAN, std::string("\x00\x00\x01\x00", 4), "\"BE\"=hex(5):00,00,01,00"},
        {"Q", 0x0b, std::string(8, '\x11'), "\"Q\"=hex(b):11,11,11,11,11,11,11,11"},
        {"Long", REG_BINARY, std::string(200, '\x42'), ""},
        {"a\"b\\c", REG_SZ, std::string("v\0", 2), R"("a\"b\\c"="v")"}};
    for (const auto& c : cases) {
        RegistryTree tree;
        tree.createKey(kKey);
        ASSERT_TRUE(tree.setValue(kKey, c.name, c.type, c.data));
        const std::string text = RegistryFile::format(tree);
        if (c.line[0] != '\0') EXPECT_NE(text.find(std::string("\n") + c.line + "\n"), std::string::npos) << text;
        RegistryTree back;
        const auto error = RegistryFile::parse(text, back);
        ASSERT_FALSE(error) << error->line << ": " << error->reason << "\n" << text;
        const RegistryKey* key = back.find(kKey);
        ASSERT_NE(key, nullptr);
        ASSERT_EQ(key->values().size(), 1u);
        EXPECT_EQ(key->values().front(), (RegistryValue{c.name, c.type, c.data}));
    }
}

TEST(RegistryFile, KeepsEmptyKeysAndOrder) {
    RegistryTree tree;
    tree.createKey(KeyPath{HKEY_CURRENT_USER, {"Software", "Empty"}});
    tree.createKey(kKey);
    tree.setValue(kKey, "b", REG_SZ, std::string("2\0", 2));
    tree.setValue(kKey, "a", REG_SZ, std::string("1\0", 2));
    tree.createKey(KeyPath{HKEY_LOCAL_MACHINE, {"X"}});
    const std::string text = RegistryFile::format(tree);
    EXPECT_EQ(text, header() +
                        "[HKEY_CURRENT_USER\\Software\\Empty]\n\n"
                        "[HKEY_CURRENT_USER\\Software\\Brimlark\\Vantorel]\n"
                        "\"b\"=\"2\"\n"
                        "\"a\"=\"1\"\n\n"
                        "[HKEY_LOCAL_MACHINE\\X]\n");
    RegistryTree back;
    ASSERT_FALSE(RegistryFile::parse(text, back));
    EXPECT_EQ(RegistryFile::format(back), text);
}

TEST(RegistryFile, ReadsWhatAnEditorMightLeave) {
    const std::string text =
        "\xEF\xBB\xBF" + std::string(RegistryFile::kHeader) +
        "\r\n\r\n; a comment\r\n"
        "  [HKEY_CURRENT_USER\\Software\\Brimlark\\Vantorel]  \r\n"
        "\"Path\" = \"C:\\Temp\"\r\n"            // a lone backslash stands for itself
        "\"Big\"=hex:01,02,\\\r\n   03,04\r\n"   // continued list
        "\"Gone\"=\"x\"\r\n"
        "\"Gone\"=-\r\n"
        "\"Count\"=DWORD:0000000A\r\n"
        "[HKEY_CURRENT_USER\\Software\\Old]\r\n"
        "[-HKEY_CURRENT_USER\\Software\\Old]\r\n";
    RegistryTree tree;
    const auto error = RegistryFile::parse(text, tree);
    ASSERT_FALSE(error) << error->line << ": " << error->reason;
    const RegistryKey* key = tree.find(kKey);
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(key->findValue("path")->data, std::string("C:\\Temp\0", 8));
    EXPECT_EQ(key->findValue("Big")->data, "\x01\x02\x03\x04");
    EXPECT_EQ(key->findValue("Gone"), nullptr);
    EXPECT_EQ(key->findValue("Count")->data, std::string("\x0a\0\0\0", 4));
    EXPECT_EQ(tree.find(KeyPath{HKEY_CURRENT_USER, {"Software", "Old"}}), nullptr);
}

// Damaged texts: each must be refused, at the right line, never half-trusted.
TEST(RegistryFile, DamageIsRefusedAtItsLine) {
    const std::string h = header();  // then line 3
    const std::string k = h + "[HKEY_CURRENT_USER\\A]\n";  // then line 4
    std::string deep = h + "[HKEY_CURRENT_USER";  // nested far beyond the limit, without exhausting the stack
    for (int i = 0; i < 100000; ++i) deep += "\\k";
    const std::pair<std::string, std::size_t> cases[] = {
        {"", 1}, {"[HKEY_CURRENT_USER\\A]\n", 1}, {"\x7f" "ELF\x01\x02 binary junk\n", 1}, {"\xFF\xFEW\0i\0n\0", 1},
        {k + "\"a\"=\"x" + '\0' + "y\"\n", 4}, {h + "\"a\"=\"b\"\n", 3}, {h + "[HKCU\\Software]\n", 3},
        {h + "[HKEY_CURRENT_USER\\Software\n", 3}, {h + "[HKEY_CURRENT_USER\\A\\\\B]\n", 3},
        {k + "\"a\"=\"half", 4}, {k + "\"a\"=dword:0000", 4}, {k + "\"a\"=hex:01,0", 4}, {k + "\"a\"=hex:01,", 4},
        {k + "\"a\"=hex:01,02,\\\n", 4}, {k + "\"a\"=hex(zz):00\n", 4}, {k + "\"a\"=qword:1\n", 4},
        {k + "\"a\"=\"b\" c\n", 4}, {k + "\"a\" \"b\"\n", 4}, {k + "hello\n", 4}, {deep + "]\n", 3}};
    for (const auto& [text, line] : cases) {
        RegistryTree tree;
        const auto error = RegistryFile::parse(text, tree);
        ASSERT_TRUE(error) << text;
        EXPECT_EQ(error->line, line) << text << ": " << error->reason;
        EXPECT_FALSE(error->reason.empty());
    }
}

}  // namespace
}  // namespace vantorel

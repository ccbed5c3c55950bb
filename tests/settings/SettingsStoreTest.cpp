#include "settings/SettingsStore.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <stdexcept>

#include "support/ScriptedMessages.h"
#include "support/TempTree.h"

namespace vantorel {
namespace {

namespace fs = std::filesystem;
using test::ScriptedMessages;
using test::TempTree;

const std::string kNul(1, '\0');
const WindowGeometry kDesigned{600, 900, 15000, 10000};
constexpr long kDesignedDivider = 4000;

// The main window as the settings see it, with its designed state.
class FakeWindow : public MainWindowState {
public:
    std::vector<std::string> historyItems(HistoryBox box) const override { return lists.count(box) ? lists.at(box) : std::vector<std::string>{}; }
    void setHistoryItems(HistoryBox box, const std::vector<std::string>& items) override {
        if (box == throwOn) throw std::runtime_error("widget gone");
        lists[box] = items;
    }
    std::string boxText(HistoryBox box) const override { return texts.count(box) ? texts.at(box) : std::string(); }
    void setBoxText(HistoryBox box, const std::string& text) override { texts[box] = text; }
    bool isOptionChecked(OptionBox box) const override { return options.at(box); }
    void setOptionChecked(OptionBox box, bool checked) override { options[box] = checked; }
    WindowGeometry geometry() const override { return normal; }
    void setGeometry(const WindowGeometry& geometry) override { normal = geometry; }
    WindowShowState showState() const override { return state; }
    void maximise() override { state = WindowShowState::Maximised; }
    long dividerPosition() const override { return divider; }
    void setDividerPosition(long position) override { divider = position; }
    void setPreviewFont(const std::string& name, long size) override {
        fontName = name;
        fontSize = size;
    }
    void switchOnFirstRunElement() override { ++firstRunCalls; }

    std::map<HistoryBox, std::vector<std::string>> lists;
    std::map<HistoryBox, std::string> texts;
    std::map<OptionBox, bool> options{
        {OptionBox::RegularExpression, false}, {OptionBox::MatchCase, false}, {OptionBox::WholeWords, false}};
    WindowGeometry normal = kDesigned;
    WindowShowState state = WindowShowState::Normal;
    long divider = kDesignedDivider;
    std::string fontName;
    long fontSize = 0;
    int firstRunCalls = 0;
    std::optional<HistoryBox> throwOn;
};

class SettingsStoreTest : public ::testing::Test {
protected:
    fs::path file() const { return folder.path("settings.reg"); }

    // Stores values under the program's key as the registry class writes them.
    void seed(const std::map<std::string, std::string>& values) {
        RegistryStore store(file());
        CRegistry reg(store);
        reg.CreateKey(SettingsStore::kKeyPath);
        ASSERT_TRUE(reg.OpenKey(SettingsStore::kKeyPath));
        for (const auto& [name, value] : values) reg.WriteString(value, name);
    }

    // What a fresh reader finds under the program's key.
    std::string stored(const std::string& name) {
        RegistryStore store(file());
        CRegistry reg(store);
        if (!reg.OpenKey(SettingsStore::kKeyPath)) return "<no key>";
        return reg.ValueExists(name) ? reg.ReadString(name) : "<missing>";
    }

    void load(AppSettings& into, FakeWindow& onto) {
        RegistryStore store(file(), &host);
        SettingsStore(store, host, "1.2.3").LoadSettings(into, onto);
    }
    void load() { load(settings, window); }
    void save(const AppSettings& from, const FakeWindow& of) {
        RegistryStore store(file(), &host);
        SettingsStore(store, host, "1.2.3").SaveSettings(from, of);
    }
    void save() { save(settings, window); }

    TempTree folder;
    ScriptedMessages host;
    AppSettings settings;
    FakeWindow window;
};

TEST_F(SettingsStoreTest, FirstRunAppliesTheDefaultsAndCreatesTheKey) {
    settings = {.HitsPerPage = 7, .PreviewAll = false, .ShowLineNumbers = false, .PreviewFontName = "Courier",
                .LastFolder = "/elsewhere"};
    load();

    EXPECT_EQ(settings, AppSettings{});
    EXPECT_EQ(window.lists[HistoryBox::Filter],
              (std::vector<std::string>{"*.txt", "*.log", "*.htm*;*.css", "*.php*;*.js", "*.csv", "*.ini", "*.c;*.cpp"}));
    EXPECT_EQ(window.texts[HistoryBox::Filter], "*.txt");
    EXPECT_EQ(window.fontName, "Arial");
    EXPECT_EQ(window.fontSize, 10);
    EXPECT_EQ(window.firstRunCalls, 1);
    EXPECT_EQ(window.normal, kDesigned);
    EXPECT_TRUE(host.messages.empty());
    EXPECT_EQ(stored("Version"), "<missing>");  // the key exists, still empty

    FakeWindow second;
    load(settings, second);
    EXPECT_EQ(second.firstRunCalls, 0);
}

TEST_F(SettingsStoreTest, FirstRunWhenTheKeyCannotBeCreated) {
    folder.write("blocker", "x");
    RegistryStore store(folder.path("blocker/settings.reg"), &host);
    SettingsStore(store, host).LoadSettings(settings, window);
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_TRUE(host.messages[0].text.starts_with("Error creating registry key.")) << host.messages[0].text;
    EXPECT_EQ(host.messages[0].icon, MessageIcon::Warning);
    EXPECT_EQ(window.texts[HistoryBox::Filter], "*.txt");  // the defaults apply all the same
}

// One value stored as text (or missing), and what it loads as.
struct LoadCase {
    const char* name;
    std::optional<std::string> stored;  // nullopt: value missing
    long expected;
};

// Where each value lands once loaded.
long loaded(const std::string& name, const AppSettings& s, const FakeWindow& w) {
    const std::map<std::string, long> fields{
        {"LinePrev", s.HitsPerPage}, {"EndPrev", s.CharsAround}, {"MidPrev", s.CharsBetween},
        {"Fsize", s.PreviewFontSize}, {"ScanSub", s.ScanSubfolders}, {"Baks", s.MakeBackups},
        {"ClrTxt", s.ClearExtractText}, {"SkipVCS", s.SkipVersionControl}, {"PreviewAll", s.PreviewAll},
        {"ShowAll", s.ShowAll}, {"ShowLineNos", s.ShowLineNumbers},
        {"REMode", w.options.at(OptionBox::RegularExpression)}, {"CaseSens", w.options.at(OptionBox::MatchCase)},
        {"WholeWord", w.options.at(OptionBox::WholeWords)}};
    return fields.at(name);
}

class SettingsValues : public SettingsStoreTest, public ::testing::WithParamInterface<LoadCase> {};

TEST_P(SettingsValues, LoadAsDesigned) {
    const auto& c = GetParam();
    std::map<std::string, std::string> values{{"Version", "1"}};
    if (c.stored) values[c.name] = *c.stored;
    seed(values);
    settings.ScanSubfolders = !c.expected;  // make sure the load decides
    settings.SkipVersionControl = !c.expected;
    settings.ShowLineNumbers = !c.expected;
    for (auto& [box, checked] : window.options) checked = !c.expected;
    load();
    EXPECT_EQ(loaded(c.name, settings, window), c.expected);
    EXPECT_TRUE(host.messages.empty());
}

const LoadCase kLoadCases[] = {
    {"LinePrev", "0", 100}, {"LinePrev", "7.6 lines", 8}, {"EndPrev", "-3", -3}, {"EndPrev", std::nullopt, 25},
    {"MidPrev", "many", 0}, {"Fsize", "0", 10}, {"ScanSub", std::nullopt, true}, {"Baks", "no", true},
    {"ClrTxt", "", true}, {"SkipVCS", "0", false}, {"ShowLineNos", std::nullopt, false},
    {"PreviewAll", "yes", false}, {"ShowAll", "1", true}, {"REMode", std::nullopt, true}, {"CaseSens", "2", true},
    {"WholeWord", "0", false}};

INSTANTIATE_TEST_SUITE_P(Values, SettingsValues, ::testing::ValuesIn(kLoadCases), [](const auto& info) {
    return std::string(info.param.name) + "_" + std::to_string(info.index);
});

TEST_F(SettingsStoreTest, HistoriesSkipMissingEntriesAndFillByPosition) {
    seed({{"Find0", "alpha"}, {"Find1", ""}, {"Find3", "delta"}, {"Find19", "last"}, {"Rep0", "r0"}, {"Dir0", "/d0"},
          {"Dir1", "/d1"}, {"Dir4", "/d4"}, {"Dir9", ""}, {"Filt0", "*.md"}, {"LastDir", "/work"},
          {"LastFilter", "*.md;*.txt"}});
    window.lists[HistoryBox::Folder] = {"/designed0", "/designed1", "/designed2"};
    load();
    EXPECT_EQ(window.lists[HistoryBox::Find], (std::vector<std::string>{"alpha", "delta", "last"}));
    EXPECT_EQ(window.lists[HistoryBox::Replace], std::vector<std::string>{"r0"});
    EXPECT_EQ(window.lists[HistoryBox::Folder], (std::vector<std::string>{"/d0", "/d1", "/designed2", "/d4"}));
    EXPECT_EQ(window.lists[HistoryBox::Filter], std::vector<std::string>{"*.md"});
    EXPECT_EQ(window.texts[HistoryBox::Folder], "/work");
    EXPECT_EQ(settings.LastFolder, "/work");
    EXPECT_EQ(window.texts[HistoryBox::Filter], "*.md;*.txt");
}

TEST_F(SettingsStoreTest, EmptySavedValuesComeBackAsALoneNul) {
    seed({{"LastDir", ""}, {"OpenWithFile", ""}, {"Fname", ""}, {"WinTop", ""}, {"WinLeft", "120"},
          {"WinWidth", "9000"}, {"WinHeight", "7000"}, {"WinDragline", "2500"}});
    load();
    EXPECT_EQ(window.texts[HistoryBox::Folder], kNul);
    EXPECT_EQ(settings.LastFolder, kNul);
    EXPECT_EQ(settings.OpenWithProgram, kNul);
    EXPECT_EQ(settings.PreviewFontName, "Arial");
    EXPECT_EQ(window.fontName, "Arial");
    EXPECT_EQ(window.normal, (WindowGeometry{0, 120, 9000, 7000}));
    EXPECT_EQ(window.divider, 2500);
}

TEST_F(SettingsStoreTest, SaveWritesEveryValueAndLoadRestoresIt) {
    settings = AppSettings{.HitsPerPage = 40, .CharsAround = 0, .CharsBetween = 75, .ScanSubfolders = false,
                           .SkipVersionControl = false, .MakeBackups = true, .ClearExtractText = false,
                           .PreviewAll = false, .ShowAll = true, .ShowLineNumbers = false,
                           .PreviewFontName = "DejaVu Sans Mono", .PreviewFontSize = 12,
                           .OpenWithProgram = "/usr/bin/kate", .LastFolder = "/srv/data", .UndoRuns = 3};
    window.lists = {{HistoryBox::Find, {"f0", "f1"}}, {HistoryBox::Replace, {"r0"}},
                    {HistoryBox::Folder, {"/srv/data", "/tmp"}}, {HistoryBox::Filter, {"*.cpp", "*.h"}}};
    window.texts = {{HistoryBox::Folder, "/srv/data"}, {HistoryBox::Filter, "*.h"}};
    window.options[OptionBox::RegularExpression] = true;
    window.options[OptionBox::WholeWords] = true;
    window.normal = {100, 200, 12345, 6789};
    window.divider = 3100;
    seed({});
    save();
    EXPECT_TRUE(host.messages.empty());

    const std::map<std::string, std::string> expected{
        {"Version", "1.2.3"}, {"LastFilter", "*.h"}, {"LastDir", "/srv/data"}, {"Find0", "f0"}, {"Find1", "f1"},
        {"Find2", kNul}, {"Find19", kNul}, {"Rep0", "r0"}, {"Rep19", kNul}, {"Dir1", "/tmp"}, {"Dir9", kNul},
        {"Filt1", "*.h"}, {"Filt2", "<missing>"}, {"LinePrev", "40"}, {"EndPrev", "0"}, {"MidPrev", "75"},
        {"ScanSub", "0"}, {"Baks", "1"}, {"ClrTxt", "0"}, {"SkipVCS", "0"}, {"REMode", "1"}, {"CaseSens", "0"},
        {"WholeWord", "1"},
        {"PreviewAll", "0"}, {"ShowAll", "1"}, {"ShowLineNos", "0"}, {"Fsize", "12"},
        {"Fname", "DejaVu Sans Mono"}, {"OpenWithFile", "/usr/bin/kate"}, {"UndoRuns", "3"}, {"WinMax", "0"}, {"WinTop", "100"},
        {"WinLeft", "200"}, {"WinWidth", "12345"}, {"WinHeight", "6789"}, {"WinDragline", "3100"}};
    for (const auto& [name, value] : expected) EXPECT_EQ(stored(name), value) << name;

    AppSettings loaded;
    FakeWindow restored;
    load(loaded, restored);
    EXPECT_EQ(loaded, settings);
    EXPECT_EQ(restored.lists, window.lists);
    EXPECT_EQ(restored.texts, window.texts);
    EXPECT_EQ(restored.options, window.options);
    EXPECT_EQ(restored.normal, window.normal);
    EXPECT_EQ(restored.divider, 3100);
    EXPECT_EQ(restored.fontName, "DejaVu Sans Mono");
    EXPECT_EQ(restored.fontSize, 12);
}

TEST_F(SettingsStoreTest, SavingThreeFiltersOverSevenRewritesOnlyTheFirstThree) {
    FakeWindow first;
    load(settings, first);  // first run: the seven default filters
    save(settings, first);

    FakeWindow second;
    load(settings, second);
    second.lists[HistoryBox::Filter] = {"*.a", "*.b", "*.c"};
    second.lists[HistoryBox::Find] = {"only"};
    save(settings, second);

    FakeWindow third;
    load(settings, third);
    EXPECT_EQ(third.lists[HistoryBox::Filter],
              (std::vector<std::string>{"*.a", "*.b", "*.c", "*.php*;*.js", "*.csv", "*.ini", "*.c;*.cpp"}));
    EXPECT_EQ(third.lists[HistoryBox::Find], std::vector<std::string>{"only"});
}

TEST_F(SettingsStoreTest, MaximisedOrMinimisedKeepsTheNormalGeometry) {
    seed({});
    window.normal = {10, 20, 9000, 8000};
    save();

    window.state = WindowShowState::Maximised;
    window.normal = {0, 0, 30000, 20000};  // what a maximised window would report
    window.divider = 5000;
    save();
    EXPECT_EQ(stored("WinMax"), "1");
    EXPECT_EQ(stored("WinTop"), "10");
    EXPECT_EQ(stored("WinWidth"), "9000");
    EXPECT_EQ(stored("WinDragline"), "5000");

    window.state = WindowShowState::Minimised;
    window.normal = {-32000, -32000, 2000, 500};
    save();
    EXPECT_EQ(stored("WinMax"), "1");  // a minimised window leaves WinMax alone too
    EXPECT_EQ(stored("WinLeft"), "20");

    FakeWindow restored;
    load(settings, restored);
    EXPECT_EQ(restored.normal, (WindowGeometry{10, 20, 9000, 8000}));
    EXPECT_EQ(restored.state, WindowShowState::Maximised);
}

TEST_F(SettingsStoreTest, AStoreThatCannotBeWrittenIsReportedOnSave) {
    seed({});
    RegistryStore store(file(), &host, RegistryStore::Options{std::chrono::milliseconds(20)});
    const int held = ::open((file().string() + ".lock").c_str(), O_RDWR);
    ASSERT_GE(held, 0);
    ASSERT_EQ(::flock(held, LOCK_EX), 0);
    SettingsStore(store, host).SaveSettings(settings, window);
    ::close(held);
    ASSERT_EQ(host.messages.size(), 1u);
    // The store's own reason (another instance holds it) follows.
    EXPECT_TRUE(host.messages[0].text.starts_with("Error writing settings to system registry.\r\n"))
        << host.messages[0].text;
}

TEST_F(SettingsStoreTest, UnexpectedFailuresAreReportedAndEndTheStep) {
    seed({{"Find0", "f"}, {"Rep0", "r"}, {"Dir0", "/d"}, {"LinePrev", "55"}});
    window.throwOn = HistoryBox::Folder;
    load();
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].text, "Error reading settings from system registry.");
    EXPECT_EQ(window.lists[HistoryBox::Find], std::vector<std::string>{"f"});  // applied before the failure
    EXPECT_EQ(settings.HitsPerPage, 100);                                      // never reached

    host.messages.clear();
    struct ThrowingOnSave : FakeWindow {
        WindowShowState showState() const override { throw std::runtime_error("gone"); }
    } broken;
    save(settings, broken);
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_EQ(host.messages[0].text, "Error writing settings to system registry.");
    EXPECT_EQ(stored("Version"), "1.2.3");  // what was written before the failure stays
}

TEST_F(SettingsStoreTest, ADamagedStoreIsReportedOnceAndTheFirstRunFollows) {
    folder.write("settings.reg", "Windows Registry Editor Version 5.00\n[HKEY_CURRENT_USER\\Software\n");
    load();
    save();
    ASSERT_EQ(host.messages.size(), 1u);
    EXPECT_NE(host.messages[0].text.find("is damaged"), std::string::npos) << host.messages[0].text;
    EXPECT_EQ(window.firstRunCalls, 1);
    EXPECT_EQ(stored("Filt0"), "*.txt");
}

}  // namespace
}  // namespace vantorel

#pragma once
// Loads and saves the user's settings and the main window's input histories
// under the registry key "HKEY_CURRENT_USER\Software\Brimlark\Vantorel".
//
// Every value is a string: numbers as decimal text, flags as "1" or "0". A
// history entry counts as missing when it reads as "" or as a lone NUL (the
// form in which an empty value comes back); any other value counts as missing
// only when it reads as "". The three flags ScanSub, Baks and ClrTxt are true
// when missing (and so is SkipVCS), the three PreviewAll, ShowAll and ShowLineNos false: the
// difference is deliberate.

#include <memory>
#include <string>

#include "settings/AppSettings.h"
#include "settings/CRegistry.h"
#include "settings/MainWindowState.h"
#include "core/MessageHost.h"
#include "settings/RegistryStore.h"

namespace vantorel {

class SettingsStore {
public:
    static constexpr const char* kKeyPath = "HKEY_CURRENT_USER\\Software\\Brimlark\\Vantorel";
    static constexpr int kFindHistory = 20;
    static constexpr int kReplaceHistory = 20;
    static constexpr int kFolderHistory = 10;
    static constexpr int kFilterHistory = 10;

    // `version` is what the Version value records: major.minor.revision.
    SettingsStore(RegistryStore& store, MessageHost& host, std::string version = defaultVersion());

    // Called when the main window is created. On a first run (no key yet) it
    // applies the defaults and creates the key.
    void LoadSettings(AppSettings& settings, MainWindowState& window);
    // Called when the main window closes. Writes nothing when the key cannot
    // be opened.
    void SaveSettings(const AppSettings& settings, const MainWindowState& window);

    static std::string defaultVersion();
    // The UndoRuns setting alone, read without changing anything (the
    // command line has no other setting).
    static long readUndoRuns(RegistryStore& store);

private:
    CRegistry& registry();
    void loadFromKey(CRegistry& reg, AppSettings& settings, MainWindowState& window);
    void loadFirstRun(CRegistry& reg, AppSettings& settings, MainWindowState& window);
    void writeAll(CRegistry& reg, const AppSettings& settings, const MainWindowState& window);
    void show(const std::string& text, const std::string& detail);

    RegistryStore& store_;
    MessageHost& host_;
    std::string version_;
    std::unique_ptr<CRegistry> registry_;
};

}  // namespace vantorel

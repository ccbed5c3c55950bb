#include "settings/SettingsStore.h"

#include <algorithm>
#include <exception>
#include <vector>

#include "settings/NumericText.h"

namespace vantorel {
namespace {

const std::string kLoneNul(1, '\0');

struct HistorySlots {
    HistoryBox box;
    const char* prefix;
    int count;
    bool byPosition;  // placed at slot i rather than appended
};

constexpr HistorySlots kHistories[] = {
    {HistoryBox::Find, "Find", SettingsStore::kFindHistory, false},
    {HistoryBox::Replace, "Rep", SettingsStore::kReplaceHistory, false},
    {HistoryBox::Folder, "Dir", SettingsStore::kFolderHistory, true},
    {HistoryBox::Filter, "Filt", SettingsStore::kFilterHistory, true},
};

struct OptionValue {
    OptionBox box;
    const char* name;
};

constexpr OptionValue kOptions[] = {
    {OptionBox::RegularExpression, "REMode"},
    {OptionBox::MatchCase, "CaseSens"},
    {OptionBox::WholeWords, "WholeWord"},
};

std::string flag(bool on) { return on ? "1" : "0"; }

// Missing or unreadable: the default; never below 0.
long undoRunsFrom(CRegistry& reg) {
    const std::string text = reg.ReadString("UndoRuns");
    if (text.empty() || text == kLoneNul) return AppSettings{}.UndoRuns;
    return std::max(0L, numericValue(text));
}

}  // namespace

long SettingsStore::readUndoRuns(RegistryStore& store) {
    try {
        CRegistry reg(store);
        return reg.OpenKey(kKeyPath) ? undoRunsFrom(reg) : AppSettings{}.UndoRuns;
    } catch (const std::exception&) {
        return AppSettings{}.UndoRuns;
    }
}

SettingsStore::SettingsStore(RegistryStore& store, MessageHost& host, std::string version)
    : store_(store), host_(host), version_(std::move(version)) {}

std::string SettingsStore::defaultVersion() {
#ifdef VANTOREL_VERSION
    return VANTOREL_VERSION;
#else
    return "0.0.0";
#endif
}

CRegistry& SettingsStore::registry() {
    if (!registry_) registry_ = std::make_unique<CRegistry>(store_);
    return *registry_;
}

void SettingsStore::show(const std::string& text, const std::string& detail) {
    Message message;
    message.text = detail.empty() ? text : text + "\r\n\r\n" + detail;
    message.icon = MessageIcon::Warning;
    message.kind = MessageKind::Failure;
    host_.showMessage(message);
}

void SettingsStore::LoadSettings(AppSettings& settings, MainWindowState& window) {
    try {
        CRegistry& reg = registry();
        if (reg.OpenKey(kKeyPath))
            loadFromKey(reg, settings, window);
        else
            loadFirstRun(reg, settings, window);
    } catch (const std::exception&) {
        show("Error reading settings from system registry.", {});
    }
    if (registry_) registry_->CloseKey();
}

void SettingsStore::loadFromKey(CRegistry& reg, AppSettings& settings, MainWindowState& window) {
    for (const auto& history : kHistories) {
        std::vector<std::string> items = window.historyItems(history.box);
        for (int i = 0; i < history.count; ++i) {
            std::string entry = reg.ReadString(history.prefix + std::to_string(i));
            if (entry.empty() || entry == kLoneNul) continue;
            if (history.byPosition && static_cast<std::size_t>(i) < items.size())
                items[static_cast<std::size_t>(i)] = std::move(entry);
            else
                items.push_back(std::move(entry));
        }
        window.setHistoryItems(history.box, items);
    }

    if (std::string dir = reg.ReadString("LastDir"); !dir.empty()) {
        window.setBoxText(HistoryBox::Folder, dir);
        settings.LastFolder = std::move(dir);
    }
    if (const std::string filter = reg.ReadString("LastFilter"); !filter.empty())
        window.setBoxText(HistoryBox::Filter, filter);

    if (const std::string text = reg.ReadString("LinePrev"); !text.empty()) settings.HitsPerPage = numericValue(text);
    if (settings.HitsPerPage < 1) settings.HitsPerPage = 100;
    if (const std::string text = reg.ReadString("EndPrev"); !text.empty()) settings.CharsAround = numericValue(text);
    if (const std::string text = reg.ReadString("MidPrev"); !text.empty()) settings.CharsBetween = numericValue(text);

    settings.ScanSubfolders = reg.ReadString("ScanSub") != "0";
    settings.MakeBackups = reg.ReadString("Baks") != "0";
    settings.ClearExtractText = reg.ReadString("ClrTxt") != "0";
    settings.SkipVersionControl = reg.ReadString("SkipVCS") != "0";

    for (const auto& option : kOptions) window.setOptionChecked(option.box, reg.ReadString(option.name) != "0");

    settings.PreviewAll = reg.ReadString("PreviewAll") == "1";
    settings.ShowAll = reg.ReadString("ShowAll") == "1";
    settings.ShowLineNumbers = reg.ReadString("ShowLineNos") == "1";

    if (std::string name = reg.ReadString("Fname"); !name.empty()) settings.PreviewFontName = std::move(name);
    if (settings.PreviewFontName.empty() || settings.PreviewFontName == kLoneNul) settings.PreviewFontName = "Arial";
    if (const std::string size = reg.ReadString("Fsize"); !size.empty()) settings.PreviewFontSize = numericValue(size);
    if (settings.PreviewFontSize < 1) settings.PreviewFontSize = 10;
    window.setPreviewFont(settings.PreviewFontName, settings.PreviewFontSize);

    if (std::string program = reg.ReadString("OpenWithFile"); !program.empty())
        settings.OpenWithProgram = std::move(program);
    settings.UndoRuns = undoRunsFrom(reg);

    // Without WinTop the key has never held a geometry: keep the designed one.
    const std::string top = reg.ReadString("WinTop");
    if (top.empty()) return;
    WindowGeometry geometry = window.geometry();
    geometry.top = numericValue(top);
    geometry.left = numericValue(reg.ReadString("WinLeft"));
    geometry.width = numericValue(reg.ReadString("WinWidth"));
    geometry.height = numericValue(reg.ReadString("WinHeight"));
    window.setGeometry(geometry);
    window.setDividerPosition(numericValue(reg.ReadString("WinDragline")));
    if (numericValue(reg.ReadString("WinMax")) != 0) window.maximise();
}

void SettingsStore::loadFirstRun(CRegistry& reg, AppSettings& settings, MainWindowState& window) {
    const std::vector<std::string> filters(kDefaultFilters.begin(), kDefaultFilters.end());
    window.setHistoryItems(HistoryBox::Filter, filters);
    window.setBoxText(HistoryBox::Filter, filters.front());

    settings.LastFolder = "\\";
    settings.HitsPerPage = 100;
    settings.CharsAround = 25;
    settings.CharsBetween = 50;
    settings.ScanSubfolders = true;
    settings.SkipVersionControl = true;
    settings.MakeBackups = false;
    settings.ClearExtractText = true;
    settings.PreviewFontName = "Arial";
    settings.PreviewFontSize = 10;
    window.setPreviewFont(settings.PreviewFontName, settings.PreviewFontSize);
    settings.PreviewAll = true;
    settings.ShowAll = false;
    settings.ShowLineNumbers = true;
    window.switchOnFirstRunElement();

    if (!reg.CreateKey(kKeyPath)) show("Error creating registry key.", store_.lastError());
}

void SettingsStore::SaveSettings(const AppSettings& settings, const MainWindowState& window) {
    try {
        CRegistry& reg = registry();
        if (!reg.OpenKey(kKeyPath)) return;
        writeAll(reg, settings, window);
        reg.CloseKey();  // writes the file
        if (store_.hasUnsavedChanges()) show("Error writing settings to system registry.", store_.lastError());
    } catch (const std::exception&) {
        show("Error writing settings to system registry.", {});
        if (registry_) registry_->CloseKey();
    }
}

void SettingsStore::writeAll(CRegistry& reg, const AppSettings& settings, const MainWindowState& window) {
    reg.WriteString(version_, "Version");
    reg.WriteString(window.boxText(HistoryBox::Filter), "LastFilter");
    reg.WriteString(window.boxText(HistoryBox::Folder), "LastDir");

    for (const auto& history : kHistories) {
        const std::vector<std::string> items = window.historyItems(history.box);
        // The filter list writes only the entries it has; higher slots keep
        // what they held. The other lists blank every slot past their end.
        const int last = history.box == HistoryBox::Filter
                             ? std::min(history.count, static_cast<int>(items.size()))
                             : history.count;
        for (int i = 0; i < last; ++i) {
            const std::size_t index = static_cast<std::size_t>(i);
            reg.WriteString(index < items.size() ? items[index] : std::string(), history.prefix + std::to_string(i));
        }
    }

    reg.WriteString(std::to_string(settings.HitsPerPage), "LinePrev");
    reg.WriteString(std::to_string(settings.CharsAround), "EndPrev");
    reg.WriteString(std::to_string(settings.CharsBetween), "MidPrev");
    reg.WriteString(flag(settings.ScanSubfolders), "ScanSub");
    reg.WriteString(flag(settings.MakeBackups), "Baks");
    reg.WriteString(flag(settings.ClearExtractText), "ClrTxt");
    reg.WriteString(flag(settings.SkipVersionControl), "SkipVCS");
    for (const auto& option : kOptions) reg.WriteString(flag(window.isOptionChecked(option.box)), option.name);
    reg.WriteString(flag(settings.PreviewAll), "PreviewAll");
    reg.WriteString(flag(settings.ShowAll), "ShowAll");
    reg.WriteString(flag(settings.ShowLineNumbers), "ShowLineNos");
    reg.WriteString(std::to_string(settings.PreviewFontSize), "Fsize");
    reg.WriteString(settings.PreviewFontName, "Fname");
    reg.WriteString(settings.OpenWithProgram, "OpenWithFile");
    reg.WriteString(std::to_string(settings.UndoRuns), "UndoRuns");

    // A minimised or maximised window keeps the last normal geometry.
    const WindowShowState state = window.showState();
    if (state != WindowShowState::Minimised) reg.WriteString(flag(state == WindowShowState::Maximised), "WinMax");
    if (state == WindowShowState::Normal) {
        const WindowGeometry geometry = window.geometry();
        reg.WriteString(std::to_string(geometry.top), "WinTop");
        reg.WriteString(std::to_string(geometry.left), "WinLeft");
        reg.WriteString(std::to_string(geometry.width), "WinWidth");
        reg.WriteString(std::to_string(geometry.height), "WinHeight");
    }
    reg.WriteString(std::to_string(window.dividerPosition()), "WinDragline");
}

}  // namespace vantorel

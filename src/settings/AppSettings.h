#pragma once
// The user's settings, one record for the whole program: loaded when the main
// window opens, edited in memory by the options dialog, saved when the main
// window closes (SettingsStore). The initial values are the first-run defaults.

#include <array>
#include <string>
#include <string_view>

namespace vantorel {

struct AppSettings {
    long HitsPerPage = 100;   // hits per preview page and per file section, at least 1
    long CharsAround = 25;    // context characters before the first and after the last hit
    long CharsBetween = 50;   // context characters kept between two hits
    bool ScanSubfolders = true;
    // Folders named .git, .hg, .svn, .bzr, _darcs or CVS are not entered.
    bool SkipVersionControl = true;
    bool MakeBackups = false;
    bool ClearExtractText = true;
    bool PreviewAll = true;
    bool ShowAll = false;
    bool ShowLineNumbers = true;
    std::string PreviewFontName = "Arial";
    long PreviewFontSize = 10;
    std::string OpenWithProgram;   // the program behind "Open with"
    std::string LastFolder = "\\"; // the folder last used
    long UndoRuns = 10;            // replaces kept for Undo; 0 keeps none

    bool operator==(const AppSettings&) const = default;
};

// The file filters offered on a first run, in this order.
inline constexpr std::array<std::string_view, 7> kDefaultFilters = {
    "*.txt", "*.log", "*.htm*;*.css", "*.php*;*.js", "*.csv", "*.ini", "*.c;*.cpp"};

}  // namespace vantorel

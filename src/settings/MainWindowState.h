#pragma once
// What the settings code reads from and writes to the main window: the four
// input boxes with their drop-down histories, the three option check boxes,
// the window's geometry and show state, the divider between the results list
// and the preview, and the preview font. The window implements it over its
// widgets; tests implement it with plain fields. Sizes and positions are in
// twips (1/1440 inch).

#include <string>
#include <vector>

namespace vantorel {

// The drop-down boxes with a history: FindText, RepText, StartDir, FilterCombo.
enum class HistoryBox { Find, Replace, Folder, Filter };

// The check boxes RegExpFind, CaseSensChk and WholeWordsChk.
enum class OptionBox { RegularExpression, MatchCase, WholeWords };

enum class WindowShowState { Normal, Minimised, Maximised };

struct WindowGeometry {
    long top = 0;
    long left = 0;
    long width = 0;
    long height = 0;

    bool operator==(const WindowGeometry&) const = default;
};

class MainWindowState {
public:
    virtual ~MainWindowState() = default;

    // The drop-down list of a box, first entry first.
    virtual std::vector<std::string> historyItems(HistoryBox box) const = 0;
    virtual void setHistoryItems(HistoryBox box, const std::vector<std::string>& items) = 0;
    // The text in the edit field of a box.
    virtual std::string boxText(HistoryBox box) const = 0;
    virtual void setBoxText(HistoryBox box, const std::string& text) = 0;

    virtual bool isOptionChecked(OptionBox box) const = 0;
    virtual void setOptionChecked(OptionBox box, bool checked) = 0;

    // Position and size of the window when it is in its normal state.
    virtual WindowGeometry geometry() const = 0;
    virtual void setGeometry(const WindowGeometry& geometry) = 0;
    virtual WindowShowState showState() const = 0;
    virtual void maximise() = 0;
    // Position of the divider between the results list and the preview.
    virtual long dividerPosition() const = 0;
    virtual void setDividerPosition(long position) = 0;

    virtual void setPreviewFont(const std::string& name, long size) = 0;
    // Called on the very first run only (no settings stored yet).
    virtual void switchOnFirstRunElement() = 0;
};

}  // namespace vantorel

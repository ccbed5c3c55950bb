#pragma once
// The main window as the settings see it: the input boxes with their
// histories, the option boxes, the window's geometry and show state, the
// divider and the preview font.

#include <functional>

#include "settings/MainWindowState.h"

namespace vantorel::ui {

class InputFrame;
class PreviewPane;
class RepForm;

class RepFormState : public MainWindowState {
public:
    // `firstRun` is called on the very first run (no settings stored yet).
    RepFormState(RepForm& window, InputFrame& inputs, PreviewPane& pane, std::function<void()> firstRun)
        : window_(window), inputs_(inputs), pane_(pane), firstRun_(std::move(firstRun)) {}

    std::vector<std::string> historyItems(HistoryBox box) const override;
    void setHistoryItems(HistoryBox box, const std::vector<std::string>& items) override;
    std::string boxText(HistoryBox box) const override;
    void setBoxText(HistoryBox box, const std::string& text) override;
    bool isOptionChecked(OptionBox box) const override;
    void setOptionChecked(OptionBox box, bool checked) override;
    WindowGeometry geometry() const override;
    void setGeometry(const WindowGeometry& geometry) override;
    WindowShowState showState() const override;
    void maximise() override;
    long dividerPosition() const override;
    void setDividerPosition(long position) override;
    void setPreviewFont(const std::string& name, long size) override;
    void switchOnFirstRunElement() override { firstRun_(); }

private:
    RepForm& window_;
    InputFrame& inputs_;
    PreviewPane& pane_;
    std::function<void()> firstRun_;
};

}  // namespace vantorel::ui

#include "ui/RepFormState.h"

#include <QCheckBox>

#include "ui/HistoryCombo.h"
#include "ui/InputFrame.h"
#include "ui/PreviewPane.h"
#include "ui/RepForm.h"
#include "ui/Twips.h"

namespace vantorel::ui {

std::vector<std::string> RepFormState::historyItems(HistoryBox box) const { return inputs_.box(box)->items(); }

void RepFormState::setHistoryItems(HistoryBox box, const std::vector<std::string>& items) {
    inputs_.box(box)->setItems(items);
}

std::string RepFormState::boxText(HistoryBox box) const { return inputs_.box(box)->text(); }

void RepFormState::setBoxText(HistoryBox box, const std::string& text) { inputs_.box(box)->setText(text); }

bool RepFormState::isOptionChecked(OptionBox box) const { return inputs_.option(box)->isChecked(); }

void RepFormState::setOptionChecked(OptionBox box, bool checked) { inputs_.option(box)->setChecked(checked); }

WindowGeometry RepFormState::geometry() const {
    const RepForm& w = window_;
    const QRect normal = w.isMaximized() || w.isMinimized() ? w.normalGeometry() : QRect(w.pos(), w.size());
    return WindowGeometry{pixelsToTwipsY(normal.y(), &w), pixelsToTwipsX(normal.x(), &w),
                          pixelsToTwipsX(normal.width(), &w), pixelsToTwipsY(normal.height(), &w)};
}

void RepFormState::setGeometry(const WindowGeometry& geometry) {
    window_.move(twipsToPixelsX(geometry.left, &window_), twipsToPixelsY(geometry.top, &window_));
    if (geometry.width > 0 && geometry.height > 0)
        window_.resize(twipsToPixelsX(geometry.width, &window_), twipsToPixelsY(geometry.height, &window_));
}

WindowShowState RepFormState::showState() const {
    if (window_.isMinimized()) return WindowShowState::Minimised;
    if (window_.isMaximized()) return WindowShowState::Maximised;
    return WindowShowState::Normal;
}

void RepFormState::maximise() { window_.setWindowState(window_.windowState() | Qt::WindowMaximized); }

long RepFormState::dividerPosition() const { return window_.dividerPosition(); }

void RepFormState::setDividerPosition(long position) { window_.setDividerPosition(position); }

void RepFormState::setPreviewFont(const std::string& name, long size) {
    pane_.setPreviewFont(QString::fromStdString(name), static_cast<int>(size));
}

}  // namespace vantorel::ui

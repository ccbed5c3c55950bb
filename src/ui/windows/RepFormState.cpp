#include "ui/windows/RepFormState.h"

#include <QCheckBox>
#include <cmath>

#include "ui/widgets/HistoryCombo.h"
#include "ui/widgets/InputFrame.h"
#include "ui/widgets/PreviewPane.h"
#include "ui/windows/RepForm.h"
#include "ui/platform/Twips.h"

namespace vantorel::ui {

std::vector<std::string> RepFormState::historyItems(HistoryBox box) const { return inputs_.box(box)->items(); }

void RepFormState::setHistoryItems(HistoryBox box, const std::vector<std::string>& items) {
    inputs_.box(box)->setItems(items);
}

std::string RepFormState::boxText(HistoryBox box) const { return inputs_.box(box)->text(); }

void RepFormState::setBoxText(HistoryBox box, const std::string& text) { inputs_.box(box)->setText(text); }

bool RepFormState::isOptionChecked(OptionBox box) const { return inputs_.option(box)->isChecked(); }

void RepFormState::setOptionChecked(OptionBox box, bool checked) { inputs_.option(box)->setChecked(checked); }

// The geometry is kept in the screen's own pixels: a window saved at one
// scale factor covers the same part of the screen at another (saved filling
// a screen at a scale factor of 2, it is not reopened a quarter of its size
// at a scale factor of 1).
namespace {

int devicePixels(int pixels, const QWidget& w) { return static_cast<int>(std::lround(pixels * w.devicePixelRatioF())); }
int logicalPixels(int pixels, const QWidget& w) { return static_cast<int>(std::lround(pixels / w.devicePixelRatioF())); }

}  // namespace

WindowGeometry RepFormState::geometry() const {
    const RepForm& w = window_;
    const QRect normal = w.isMaximized() || w.isMinimized() ? w.normalGeometry() : QRect(w.pos(), w.size());
    return WindowGeometry{pixelsToTwipsY(devicePixels(normal.y(), w), &w), pixelsToTwipsX(devicePixels(normal.x(), w), &w),
                          pixelsToTwipsX(devicePixels(normal.width(), w), &w),
                          pixelsToTwipsY(devicePixels(normal.height(), w), &w)};
}

void RepFormState::setGeometry(const WindowGeometry& geometry) {
    const RepForm& w = window_;
    window_.move(logicalPixels(twipsToPixelsX(geometry.left, &w), w), logicalPixels(twipsToPixelsY(geometry.top, &w), w));
    if (geometry.width > 0 && geometry.height > 0)
        window_.resize(logicalPixels(twipsToPixelsX(geometry.width, &w), w),
                       logicalPixels(twipsToPixelsY(geometry.height, &w), w));
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

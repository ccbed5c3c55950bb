#include "ui/platform/ScreenFit.h"

#include <QApplication>
#include <QEvent>
#include <QShowEvent>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace vantorel::ui {
namespace {

class ScreenKeeper : public QObject {
public:
    explicit ScreenKeeper(QWidget* window) : QObject(window) { window->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Show || static_cast<QShowEvent*>(event)->spontaneous() || delivering_) return false;
        // The window places itself first (a dialog centres itself over its
        // owner as it is shown), then is fitted, before it is on the screen.
        auto* window = static_cast<QWidget*>(watched);
        delivering_ = true;
        QCoreApplication::sendEvent(window, event);
        delivering_ = false;
        if (!(window->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen))) fitToScreen(window);
        return true;
    }

private:
    bool delivering_ = false;
};

}  // namespace

void fitToScreen(QWidget* window) {
    const QScreen* screen = window->screen();
    if (!screen) return;
    const QRect room = screen->availableGeometry();
    // The frame the window system adds. Before it has framed the window the
    // frame is not known: a title bar and borders of the usual size are
    // kept free for it.
    QSize frame = window->frameGeometry().size() - window->size();
    QMargins unknownFrame;
    if (frame.isNull() && !window->windowFlags().testFlag(Qt::FramelessWindowHint)) {
        const QStyle* style = window->style();
        const int border = style->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, window);
        const int title = style->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window);
        unknownFrame = QMargins(border, title + border, border, border);
        frame = QSize(2 * border, title + 2 * border);
    }
    const QSize most = room.size() - frame;
    const QSize fitted(std::clamp(window->width(), window->minimumWidth(), std::max(window->minimumWidth(), most.width())),
                       std::clamp(window->height(), window->minimumHeight(),
                                  std::max(window->minimumHeight(), most.height())));
    if (fitted != window->size()) window->resize(fitted);
    const QRect outer = window->frameGeometry().marginsAdded(unknownFrame);
    // Left and top edges win when the window is still larger than the room.
    const int x = std::max(room.left(), std::min(outer.left(), room.right() + 1 - outer.width()));
    const int y = std::max(room.top(), std::min(outer.top(), room.bottom() + 1 - outer.height()));
    // Not framed yet, the window's position is that of its inside: its title bar goes above it.
    if (x != outer.left() || y != outer.top()) window->move(x + unknownFrame.left(), y + unknownFrame.top());
}

void keepOnScreen(QWidget* window) { new ScreenKeeper(window); }

ScrollingBody::ScrollingBody(QWidget* body, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);  // the controls in it take the focus, and Tab scrolls to them
    setWidgetResizable(true);
    setWidget(body);
    // The body shows the window's own background, not a page's.
    viewport()->setAutoFillBackground(false);
    body->setAutoFillBackground(false);
    // A control reached by its access key or a click comes into view, as one reached by Tab does.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now && widget() && widget()->isAncestorOf(now)) ensureWidgetVisible(now, 0, 0);
    });
}

QSize ScrollingBody::sizeHint() const {
    // QScrollArea caps its wish at a few dozen lines; the body's is taken whole.
    return widget() ? widget()->sizeHint().expandedTo(widget()->minimumSizeHint()) : QScrollArea::sizeHint();
}

QSize ScrollingBody::minimumSizeHint() const {
    // Room for the scroll bars and a few lines of the body.
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    const int line = fontMetrics().height();
    return {4 * bar + 8 * line, 2 * bar + 3 * line};
}

}  // namespace vantorel::ui

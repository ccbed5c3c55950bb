#include "ui/ScreenFit.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace vantorel::ui {

void fitToScreen(QWidget* window) {
    const QScreen* screen = window->screen();
    if (!screen) return;
    const QRect room = screen->availableGeometry();
    // The frame the window system adds. Before it has framed the window the
    // frame is not known: a title bar and borders of the usual size are
    // kept free for it.
    QSize frame = window->frameGeometry().size() - window->size();
    if (frame.isNull() && !window->windowFlags().testFlag(Qt::FramelessWindowHint)) {
        const QStyle* style = window->style();
        const int border = style->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, window);
        frame = QSize(2 * border, style->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window) + 2 * border);
    }
    const QSize most = room.size() - frame;
    const QSize fitted(std::clamp(window->width(), window->minimumWidth(), std::max(window->minimumWidth(), most.width())),
                       std::clamp(window->height(), window->minimumHeight(),
                                  std::max(window->minimumHeight(), most.height())));
    if (fitted != window->size()) window->resize(fitted);
    const QRect outer = window->frameGeometry();
    // Left and top edges win when the window is still larger than the room.
    const int x = std::max(room.left(), std::min(outer.left(), room.right() + 1 - outer.width()));
    const int y = std::max(room.top(), std::min(outer.top(), room.bottom() + 1 - outer.height()));
    if (x != outer.left() || y != outer.top()) window->move(x, y);
}

}  // namespace vantorel::ui

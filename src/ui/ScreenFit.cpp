#include "ui/ScreenFit.h"

#include <QScreen>
#include <QWidget>
#include <algorithm>

namespace vantorel::ui {

void fitToScreen(QWidget* window) {
    const QScreen* screen = window->screen();
    if (!screen) return;
    const QRect room = screen->availableGeometry();
    // The frame the window system adds (nothing is known before it is shown).
    const QSize frame = window->frameGeometry().size() - window->size();
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

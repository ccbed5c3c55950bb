#pragma once
// Keeps a top-level window on the screen it opens on: a window larger than
// the screen's free area (a small screen, or a scale factor of 2) is shrunk
// to it, down to the window's minimum size, and a window that sticks out is
// moved in, title bar first.

class QWidget;

namespace vantorel::ui {

void fitToScreen(QWidget* window);

}  // namespace vantorel::ui

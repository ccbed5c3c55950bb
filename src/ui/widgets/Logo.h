#pragma once
// The two pictures of the program, drawn rather than shipped: the maker's
// mark and the program's own icon.

#include <QPixmap>

namespace vantorel::ui {

QPixmap makerLogo(int size);
QPixmap productLogo(int size);

}  // namespace vantorel::ui

#pragma once
// The names of the installed font families, read from the system the first
// time they are asked for and kept for the rest of the run.

#include <QStringList>
#include <functional>

namespace vantorel::ui {

const QStringList& FontNames();

// Where the names come from (by default the system's font database). Setting
// it forgets the names read so far; for tests.
void setFontNameSource(std::function<QStringList()> source);

}  // namespace vantorel::ui

#pragma once
// The names of library entries as lists show them. Spaces at the end of a
// name are part of it ("Digits" and "Digits  " are two entries) but cannot
// be seen: they are shown as open boxes, and a screen reader is told how
// many there are.

#include <QString>
#include <string>

namespace vantorel::ui {

inline QString shownName(const std::string& name) {
    QString shown = QString::fromStdString(name);
    qsizetype end = shown.size();
    while (end > 0 && shown[end - 1] == QLatin1Char(' ')) --end;
    return shown.left(end) + QString(shown.size() - end, QChar(0x2423));
}

inline QString spokenName(const std::string& name) {
    QString spoken = QString::fromStdString(name);
    const qsizetype size = spoken.size();
    while (!spoken.isEmpty() && spoken.back() == QLatin1Char(' ')) spoken.chop(1);
    const qsizetype spaces = size - spoken.size();
    if (spaces == 0) return spoken;
    return spoken + (spaces == 1 ? QStringLiteral(", ending in a space") : QStringLiteral(", ending in %1 spaces").arg(spaces));
}

}  // namespace vantorel::ui

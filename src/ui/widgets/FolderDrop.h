#pragma once
// Lets a window take a folder, or a file, dropped on it from a file manager:
// it accepts drags that carry a local path that exists, and reports the
// folder to start in (a file gives its folder).

#include <QObject>

class QWidget;

namespace vantorel::ui {

class FolderDrop : public QObject {
    Q_OBJECT
public:
    // Watches `window` and makes it accept drops.
    explicit FolderDrop(QWidget* window);
    // Watches another widget too (one that would otherwise take the drop itself).
    void watch(QWidget* widget);

signals:
    void folderDropped(const QString& folder);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace vantorel::ui

#include "ui/widgets/FolderDrop.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include "files/DroppedPath.h"

namespace vantorel::ui {
namespace {

// The folder a drag would give, or "" when it carries no usable path.
QString folderOf(const QMimeData* data) {
    if (!data || !data->hasUrls() || data->urls().isEmpty()) return {};
    const QUrl first = data->urls().constFirst();
    if (!first.isLocalFile()) return {};
    return QString::fromStdString(startFolderForDrop(first.toLocalFile().toStdString()));
}

}  // namespace

FolderDrop::FolderDrop(QWidget* window) : QObject(window) { watch(window); }

void FolderDrop::watch(QWidget* widget) {
    widget->setAcceptDrops(true);
    widget->installEventFilter(this);
}

bool FolderDrop::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove: {
            auto* drag = static_cast<QDropEvent*>(event);
            if (folderOf(drag->mimeData()).isEmpty()) return false;
            drag->acceptProposedAction();
            return true;
        }
        case QEvent::Drop: {
            auto* drop = static_cast<QDropEvent*>(event);
            const QString folder = folderOf(drop->mimeData());
            if (folder.isEmpty()) return false;
            drop->acceptProposedAction();
            emit folderDropped(folder);
            return true;
        }
        default:
            return QObject::eventFilter(watched, event);
    }
}

}  // namespace vantorel::ui

// A folder or a file dropped on a window gives the folder to start in.

#include <QMimeData>

#include "UiTestSupport.h"
#include "support/TempTree.h"
#include "ui/FolderDrop.h"

using namespace vantorel;

class FolderDropTest : public QObject {
    Q_OBJECT

    // Drags the URLs over the widget and drops them; true when the drop was taken.
    static bool drop(QWidget& target, const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        const QPoint at(10, 10);
        QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&target, &enter);
        if (!enter.isAccepted()) return false;
        QDropEvent dropped(QPointF(at), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&target, &dropped);
        return dropped.isAccepted();
    }

private slots:
    void aDroppedFolderOrFileGivesTheStartFolder() {
        test::TempTree tree;
        tree.write("docs/a.txt", "a");
        QWidget window;
        auto* folders = new ui::FolderDrop(&window);
        QSignalSpy dropped(folders, &ui::FolderDrop::folderDropped);
        QVERIFY(window.acceptDrops());
        QVERIFY(drop(window, {QUrl::fromLocalFile(QString::fromStdString(tree.path("docs")))}));
        QVERIFY(drop(window, {QUrl::fromLocalFile(QString::fromStdString(tree.path("docs/a.txt")))}));
        QVERIFY(!drop(window, {QUrl(QStringLiteral("https://example.org/docs/"))}));
        QCOMPARE(dropped.count(), 2);
        QCOMPARE(dropped.at(0).at(0).toString(), QString::fromStdString(tree.path("docs")));
        QCOMPARE(dropped.at(1).at(0).toString(), QString::fromStdString(tree.path("docs")));
    }
};

QTEST_MAIN(FolderDropTest)
#include "FolderDropTest.moc"

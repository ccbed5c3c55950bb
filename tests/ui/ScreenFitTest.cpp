// A window larger than its screen, or beside it, is brought onto it.

#include <QScreen>

#include "UiTestSupport.h"
#include "ui/ScreenFit.h"

class ScreenFitTest : public QObject {
    Q_OBJECT
private slots:
    void aWindowIsShrunkAndMovedOntoItsScreen() {
        const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
        QWidget big;
        big.setMinimumSize(200, 150);
        big.resize(room.width() * 2, room.height() * 2);  // as at a scale factor of 2
        big.move(room.right() - 50, room.bottom() - 50);
        vantorel::ui::fitToScreen(&big);
        QVERIFY2(room.contains(big.frameGeometry()), qPrintable(QString("%1,%2 %3x%4")
                                                                    .arg(big.x()).arg(big.y())
                                                                    .arg(big.width()).arg(big.height())));

        QWidget small;  // never below its minimum size; its top-left corner stays on the screen
        small.setMinimumSize(room.width() + 100, 100);
        small.resize(small.minimumSize());
        small.move(room.left() - 300, room.top() + 10);
        vantorel::ui::fitToScreen(&small);
        QCOMPARE(small.width(), room.width() + 100);
        QCOMPARE(small.frameGeometry().topLeft(), QPoint(room.left(), room.top() + 10));
    }
};

QTEST_MAIN(ScreenFitTest)
#include "ScreenFitTest.moc"

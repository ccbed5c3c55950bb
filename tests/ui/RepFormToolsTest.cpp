// What the main window opens and how it is reached: the library handing a
// pair to the find and replace boxes, and the keyboard.

#include <QListWidget>
#include <QMenuBar>

#include "UiTestSupport.h"
#include "ui/platform/FontNames.h"
#include "ui/windows/RegExLibFrm.h"

using namespace vantorel;
using namespace vantorel::test;

class RepFormToolsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { ui::setFontNameSource([] { return QStringList{QStringLiteral("Beta Sans")}; }); }

    void theLibraryTakesTheBoxesTextsAndHandsItsChoiceBack() {
        QTemporaryDir program;
        QVERIFY(writeBytes(program.filePath("RegEx.txt"), "Digits\t\\d+\t#\r\nWords\t\\w+\t\r\n"));
        FormFixture f;
        f.programFolder = program.path().toStdString();
        f.restart();
        f.setInputs(QString(), "*.txt", "typed", "kept");

        QString shownPattern, shownReplacement;
        whenModal([&](QWidget* modal) {
            auto* window = qobject_cast<ui::RegExLibFrm*>(modal);
            QVERIFY(window);
            shownPattern = window->findChild<QLineEdit*>("REtxt")->text();
            shownReplacement = window->findChild<QLineEdit*>("RepTxt")->text();
            clickEntry(window->findChild<QListWidget*>("RegExList"), 1, true);
        });
        QTest::mouseClick(f.button("ShowLibBtn"), Qt::LeftButton);
        QCOMPARE(shownPattern, QString("typed"));
        QCOMPARE(shownReplacement, QString("kept"));
        QCOMPARE(f.combo("FindText")->currentText(), QString("\\w+"));
        QCOMPARE(f.combo("RepText")->currentText(), QString());  // an empty replacement is taken too

        // Closed, or used with an empty pattern: the boxes stay as they are
        // (the choice made before is not handed over again).
        for (const char* button : {"lvButtons_H3", "lvButtons_H1"}) {
            whenModal([button](QWidget* modal) {
                modal->findChild<QLineEdit*>("REtxt")->clear();
                QTest::mouseClick(modal->findChild<QAbstractButton*>(button), Qt::LeftButton);
            });
            f.combo("RepText")->setEditText("kept");
            QTest::mouseClick(f.button("ShowLibBtn"), Qt::LeftButton);
            QCOMPARE(f.combo("FindText")->currentText(), QString("\\w+"));
            QCOMPARE(f.combo("RepText")->currentText(), QString("kept"));
        }
        QVERIFY(f.messages.messages.empty());
    }

    void keysReachTheFindBoxHelpAndEveryControlByItsOwnAccessKey() {
        FormFixture f;
        f.showActive();
        f.combo("FindText")->setEditText("needle");
        f.child("ListView1")->setFocus();
        QTest::keyClick(f.form.get(), Qt::Key_F, Qt::ControlModifier);
        QLineEdit* find = f.combo("FindText")->lineEdit();
        QVERIFY(find->hasFocus());
        QCOMPARE(find->selectedText(), QString("needle"));
        QTest::keyClick(f.form.get(), Qt::Key_F1);
        QCOMPARE(f.desktop.opened.back(), QUrl::fromLocalFile(VANTOREL_DATA_DIR "/readme.html"));

        // No two menus, labels, boxes or buttons share an access key.
        QStringList captions;
        for (QAction* menu : f.form->menuBar()->actions()) captions << menu->text();
        for (QAbstractButton* button : f.form->findChildren<QAbstractButton*>()) captions << button->text();
        for (QLabel* label : f.form->findChildren<QLabel*>())
            if (label->buddy()) captions << label->text();
        QMap<QChar, QString> keys;
        for (const QString& caption : captions) {
            const int at = QString(caption).replace("&&", "__").indexOf('&');
            if (at < 0 || at + 1 >= caption.size()) continue;
            const QChar key = caption.at(at + 1).toLower();
            QVERIFY2(!keys.contains(key), qPrintable(keys[key] + " and " + caption));
            keys[key] = caption;
        }
        QVERIFY(keys.contains('i') && keys.contains('p') && keys.contains('e'));  // Find, Replace, Extract
    }
};

QTEST_MAIN(RepFormToolsTest)
#include "RepFormToolsTest.moc"

// What the main window opens and how it is reached: the library handing a
// pair to the find and replace boxes, the options dialog and the settings it
// changes, the keyboard, drops, and the screen the window opens on.

#include <QComboBox>
#include <QListWidget>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>
#include <QTreeView>

#include "UiTestSupport.h"
#include "ui/platform/FontNames.h"
#include "ui/windows/RegExLibFrm.h"
#include "ui/platform/ScreenFit.h"
#include "ui/windows/frmOptions.h"

using namespace vantorel;
using namespace vantorel::test;

namespace {

ui::frmOptions* openOptions(FormFixture& f) {
    QTest::mouseClick(f.button("OptBtn"), Qt::LeftButton);
    return f.form->findChild<ui::frmOptions*>();
}

}  // namespace

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

    void optionsChangeTheWindowAndItsSettings() {
        TempTree tree;
        tree.write("p.txt", "hit a\nhit b\nhit c\n");
        FormFixture f;
        f.showActive();
        f.action("mAllFound")->trigger();  // one file at a time
        f.form->settings().HitsPerPage = 2;
        QVERIFY(f.run(root(tree), "*.txt", "hit"));
        auto* heading = f.child<QLabel>("PreviewLbl");
        QTRY_VERIFY(heading->text().startsWith(" Results 1-2: "));
        f.combo("FindText")->setItems({"old", "older"});

        ui::frmOptions* options = openOptions(f);
        QVERIFY(options && options->isVisible() && options->isModal());
        auto* hits = options->findChild<QLineEdit*>("HppTxt");
        hits->selectAll();
        QTest::keyClicks(hits, "10");
        options->findChild<QCheckBox*>("ScanSubchk")->setChecked(false);
        options->findChild<QCheckBox*>("createBakChk")->setChecked(true);
        options->findChild<QComboBox*>("Combo1")->setEditText("Beta Sans");
        f.messages.answers = {true};
        QTest::mouseClick(options->findChild<QAbstractButton*>("cmdClearFindHist"), Qt::LeftButton);
        QCOMPARE(f.combo("FindText")->count(), 0);
        QCOMPARE(f.combo("FindText")->currentText(), QString("hit"));  // the text typed stays
        QTest::mouseClick(options->findChild<QAbstractButton*>("CmdApply"), Qt::LeftButton);
        // The file on show follows the limits and the font applied.
        QTRY_VERIFY(heading->text().startsWith(" Results 1-3: "));
        QCOMPARE(f.pane()->font().family(), QString("Beta Sans"));
        QTest::mouseClick(options->findChild<QAbstractButton*>("CmdOK"), Qt::LeftButton);
        QTRY_VERIFY(!f.form->findChild<ui::frmOptions*>());

        // Ctrl+, opens it again; Cancel.
        f.showActive();
        QTest::keyClick(f.form.get(), Qt::Key_Comma, Qt::ControlModifier);
        QTRY_VERIFY(f.form->findChild<ui::frmOptions*>());
        QTest::mouseClick(f.form->findChild<ui::frmOptions*>()->findChild<QAbstractButton*>("CmdCancel"),
                          Qt::LeftButton);
        const AppSettings& kept = f.form->settings();
        QCOMPARE(kept.HitsPerPage, 10L);
        QVERIFY(!kept.ScanSubfolders && kept.MakeBackups);
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

    void aDroppedFolderOrFileBecomesTheStartFolder() {
        TempTree tree;
        tree.write("docs/a.txt", "a");
        const QString docs = QString::fromStdString(tree.path("docs"));
        FormFixture f;
        QVERIFY(dropUrls(f.child<QTreeView>("ListView1")->viewport(), {QUrl::fromLocalFile(docs)}));
        QCOMPARE(f.combo("StartDir")->currentText(), docs);
        f.combo("StartDir")->setEditText(QString());
        QVERIFY(dropUrls(f.combo("StartDir")->lineEdit(), {QUrl::fromLocalFile(docs + "/a.txt")}));
        QCOMPARE(f.combo("StartDir")->currentText(), docs);
        QVERIFY(!dropUrls(f.pane()->viewport(), {QUrl("https://example.org/docs/")}));
        QCOMPARE(f.combo("StartDir")->currentText(), docs);
    }

    void theWindowFitsTheScreenItOpensOn() {
        FormFixture f;
        const QRect room = f.form->screen()->availableGeometry();
        // As saved on a larger screen that is not there any more.
        f.form->resize(room.width() + 300, room.height() + 200);
        f.form->move(room.right() + 2000, room.bottom() + 1500);
        f.showActive();
        QVERIFY2(room.contains(f.form->frameGeometry()),
                 qPrintable(QString("%1x%2").arg(f.form->width()).arg(f.form->height())));
        // Room for the smallest window on a 1280x900 screen at a scale factor of 2.
        QVERIFY2(f.form->minimumWidth() <= 640 && f.form->minimumHeight() <= 420,
                 qPrintable(QString("%1x%2").arg(f.form->minimumWidth()).arg(f.form->minimumHeight())));

        // A window that cannot fit keeps its minimum size and its top-left
        // corner on the screen; not framed yet, it keeps room above it for
        // the title bar it will get.
        QWidget wide;
        wide.setMinimumSize(room.width() + 100, 100);
        wide.resize(wide.minimumSize());
        wide.move(room.left() - 300, room.top() + 10);
        ui::fitToScreen(&wide);
        QCOMPARE(wide.width(), room.width() + 100);
        const int border = wide.style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, &wide);
        const int title = wide.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &wide);
        QCOMPARE(wide.pos(), QPoint(room.left() + border, room.top() + title + border));
    }
};

QTEST_MAIN(RepFormToolsTest)
#include "RepFormToolsTest.moc"

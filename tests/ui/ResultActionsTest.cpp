// The extraction window, the results list's context menu and the two
// exports, driven through the window's controls.

#include <QHeaderView>
#include <QMenu>
#include <QRegularExpression>

#include "UiTestSupport.h"
#include "ui/windows/ExtractForm.h"
#include "ui/windows/PopUpForm.h"
#include "ui/models/ResultsView.h"

using namespace vantorel;
using namespace vantorel::test;

class ResultActionsTest : public QObject {
    Q_OBJECT

    // A window on a tree of three listed files: a.txt (2 matches), b.txt (1), sub/c.txt (3).
    struct Listed : FormFixture {
        TempTree tree;
        explicit Listed(const char* pattern = "id=\\d+") {
            tree.write("a.txt", "id=1 id=22\n");
            tree.write("b.txt", "id=333\n");
            tree.write("none.txt", "nothing\n");
            tree.write("sub/c.txt", "id=4\nid=5 id=6\n");
            child<QCheckBox>("RegExpFind")->setChecked(true);
            if (pattern) find(pattern);
        }
        void find(const char* pattern = "id=\\d+") { QVERIFY(run(root(tree), "*.txt", pattern)); }
    };

    // Right-clicks a row (selecting it) and returns the menu that pops up.
    static QMenu* rightClick(FormFixture& f, int row) {
        auto* view = f.child<ui::ResultsView>("ListView1");
        QTest::mouseClick(view->viewport(), Qt::RightButton, {}, view->visualRect(f.rows().index(row, 0)).center());
        return f.form->findChild<QMenu*>("mmuPopUp");
    }

    static void select(FormFixture& f, const std::vector<int>& rows) {
        auto* view = f.child<ui::ResultsView>("ListView1");
        view->clearSelection();
        for (int row : rows)
            view->selectionModel()->select(f.rows().index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        view->selectionModel()->setCurrentIndex(f.rows().index(*rows.begin(), 0), QItemSelectionModel::NoUpdate);
    }

private slots:
    void extractionGathersAcrossRunsAndShowsOnlyWithMatches() {
        Listed f(nullptr);
        const TempTree& tree = f.tree;
        QVERIFY(f.run(root(tree), "none.txt", "id=\\d+", {}, "ExtrBtn"));
        auto* window = f.form->extractWindow();
        QVERIFY(!window->isVisible());  // nothing found: the window stays away

        QVERIFY(f.run(root(tree), "*.txt", "id=\\d+", {}, "ExtrBtn"));
        QVERIFY(window->isVisible());
        QCOMPARE(window->windowTitle(), QString("Extracted Text"));
        const std::string first = "id=1\r\nid=22\r\nid=333\r\nid=4\r\nid=5\r\nid=6\r\n";
        QCOMPARE(f.form->extractedText(), first);
        QVERIFY(f.runBy("ExtrBtn"));
        QCOMPARE(f.form->extractedText(), first);  // cleared before each Extract

        f.form->settings().ClearExtractText = false;
        QVERIFY(f.run(root(tree), "b.txt", "\\d+", {}, "ExtrBtn"));
        QCOMPARE(f.form->extractedText(), first + "333\r\n");  // the second run's lines below the first's

        // Closing hides; the text survives and comes back from the View menu.
        QVERIFY(!window->close());
        QVERIFY(!window->isVisible());
        f.action("mViewExtrWin")->trigger();
        QVERIFY(window->isVisible());
        QCOMPARE(f.form->extractedText(), first + "333\r\n");
        QTest::mouseClick(window->findChild<QAbstractButton*>("HideBtn"), Qt::LeftButton);
        QVERIFY(!window->isVisible());
        QTest::mouseClick(window->findChild<QAbstractButton*>("ClearButton"), Qt::LeftButton);
        QCOMPARE(f.form->extractedText(), std::string());
    }

    void savingExtractedTextChoosesRichTextByTheNamesLastThreeCharacters() {
        TempTree tree;
        FormFixture f;
        ui::ExtractForm* window = f.form->extractWindow();
        window->save();  // empty: no dialog
        QCOMPARE(f.desktop.saveDialogs, 0);
        window->appendText("caf\xc3\xa9\r\nid=2\r\n");
        for (const char* name : {"out.rtf", "out.txt"}) {
            f.desktop.saveAnswer = root(tree) + "/" + name;
            QTest::mouseClick(window->findChild<QAbstractButton*>("SaveBtn"), Qt::LeftButton);
        }
        QCOMPARE(f.desktop.lastFilter, QString("Plain Text files (*.txt)"));
        QCOMPARE(f.desktop.lastSuffix, QString("txt"));
        QVERIFY(tree.read("out.rtf").rfind("{\\rtf1", 0) == 0);
        QVERIFY(tree.read("out.rtf").find("caf\\'e9\\par") != std::string::npos);
        QCOMPARE(tree.read("out.txt"), std::string("caf\xc3\xa9\r\nid=2\r\n"));
        f.desktop.saveAnswer.clear();
        const int before = f.desktop.saveDialogs;
        window->save();  // cancelled: nothing written
        QCOMPARE(f.desktop.saveDialogs, before + 1);
    }

    void contextMenuCaptionsFollowTheRowAndTheSelection() {
        Listed f;
        QMenu* menu = rightClick(f, 1);
        QVERIFY(menu && menu->isVisible());
        QCOMPARE(f.action("mmuRun")->text(), QString("Open b.txt with associated program"));
        QCOMPARE(f.action("mmuMark")->text(), QString("Mark b.txt"));
        QVERIFY(!f.action("MnuMarkAll")->isVisible());
        QVERIFY(!f.action("MnuUnmarkAll")->isVisible());
        QVERIFY(!f.action("mnuOpenWithFN")->isVisible());  // no remembered program
        menu->hide();

        // Two selected rows show the multi-row items; the captions follow the current row.
        f.form->settings().OpenWithProgram = "/usr/local/bin/ed.exe";
        f.rows().setChecked(2, true);
        select(f, {2, 0});
        f.form->findChild<ui::PopUpForm*>("PopUpForm")->popUp(QPoint(10, 10));
        QVERIFY(f.action("MnuMarkAll")->isVisible());
        QVERIFY(f.action("MnuUnmarkAll")->isVisible());
        QCOMPARE(f.action("mmuMark")->text(), QString("Unmark c.txt"));
        QVERIFY(f.action("mnuOpenWithFN")->isVisible());
        QCOMPARE(f.action("mnuOpenWithFN")->text(), QString("Open with ed.exe"));
        menu->hide();

        // From the keyboard: the Menu key and Shift+F10, for the current row.
        auto* view = f.child<ui::ResultsView>("ListView1");
        select(f, {1});
        QTest::keyClick(view, Qt::Key_Menu);
        QVERIFY(menu->isVisible());
        QCOMPARE(f.action("mmuMark")->text(), QString("Mark b.txt"));
        menu->hide();
        QTest::keyClick(view, Qt::Key_F10, Qt::ShiftModifier);
        QVERIFY(menu->isVisible());
        menu->hide();
    }

    void eachMarkingItemSetsTheMarksAndTheMarkedBoxFollows() {
        Listed f;
        auto* marked = f.child<QCheckBox>("MarkedChk");
        QVERIFY(!marked->isEnabled());
        const struct {
            const char* item;
            std::vector<int> before, selected, after;
        } cases[] = {
            {"mmuMark", {}, {0}, {0}},
            {"MnuMarkAll", {}, {1, 2}, {1, 2}},
            {"mnuInv", {1, 2}, {1}, {0}},
            // No mark left: the box is cleared and disabled, and the inputs freed.
            {"MnuUnmarkAll", {0, 2}, {0, 1, 2}, {}},
        };
        for (const auto& c : cases) {
            for (int row = 0; row < 3; ++row) {
                const bool on = std::find(c.before.begin(), c.before.end(), row) != c.before.end();
                f.rows().setData(f.rows().index(row, 0), on ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
            }
            select(f, c.selected);
            f.action(c.item)->trigger();
            std::vector<int> now;
            for (int row = 0; row < 3; ++row)
                if (f.rows().rowAt(row).checked) now.push_back(row);
            QCOMPARE(now, c.after);
            const bool any = !now.empty();
            QVERIFY2(marked->isEnabled() == any && marked->isChecked() == any, c.item);
            for (const char* input : {"FilterCombo", "StartDir", "FolderButton", "ffiltLbl", "StLocLbl"})
                QVERIFY2(f.child(input)->isEnabled() == !any, c.item);
        }
    }

    void openingTheFileOrWithAProgramRemembersItAndReportsFailures() {
        Listed f;
        rightClick(f, 2)->hide();
        const QString path = root(f.tree) + "/sub/c.txt";
        f.action("mmuRun")->trigger();  // its own program
        QCOMPARE(f.desktop.opened.back(), QUrl::fromLocalFile(path));

        f.desktop.openAnswer.clear();  // cancelled: nothing runs, nothing is remembered
        f.action("mmuOpenWith")->trigger();
        QVERIFY(f.desktop.started.empty());
        QCOMPARE(f.form->settings().OpenWithProgram, std::string());

        f.desktop.openAnswer = "/opt/tools/viewer";
        f.desktop.startSucceeds = false;
        f.action("mmuOpenWith")->trigger();
        QCOMPARE(f.desktop.started.back(), (QStringList{"/opt/tools/viewer", path}));
        QCOMPARE(f.messages.texts().back(), std::string("Error opening application."));
        QCOMPARE(f.messages.messages.back().icon, MessageIcon::Warning);
        QCOMPARE(f.form->settings().OpenWithProgram, std::string("/opt/tools/viewer"));

        rightClick(f, 2)->hide();
        QVERIFY(f.action("mnuOpenWithFN")->isVisible());
        QCOMPARE(f.action("mnuOpenWithFN")->text(), QString("Open with viewer"));
        f.action("mnuOpenWithFN")->trigger();
        QCOMPARE(f.messages.texts().back(), std::string("Error opening application /opt/tools/viewer"));
        f.desktop.startSucceeds = true;
        f.action("mnuOpenWithFN")->trigger();
        QCOMPARE(f.desktop.started.size(), std::size_t{3});
    }

    void matchListLogHoldsTheRowsAsShown() {
        Listed f;
        f.child<ui::ResultsView>("ListView1")->header()->sectionClicked(2);  // Matches, descending
        f.desktop.saveAnswer = root(f.tree) + "/log.csv";
        f.action("mExportMatch")->trigger();
        QCOMPARE(f.desktop.lastSuffix, QString("txt"));
        QCOMPARE(f.messages.texts().back(), (root(f.tree) + "/log.csv log file created.").toStdString());
        const QString log = QString::fromStdString(f.tree.read("log.csv"));
        const QString date = "\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d";
        const QString r = QRegularExpression::escape(root(f.tree));
        const QRegularExpression expected("^File Name,Path,Matches,File Size,Modified\r\n"
                                          "c\\.txt," + r + "/sub/,3,15," + date + "\r\n"
                                          "a\\.txt," + r + "/,2,11," + date + "\r\n"
                                          "b\\.txt," + r + "/,1,7," + date + "\r\n$");
        QVERIFY2(expected.match(log).hasMatch(), qPrintable(log));
    }

    void matchDetailsAreSavedAsRichOrPlainText() {
        Listed f("zzz");  // nothing found: the preview is empty
        f.action("mExportDetail")->trigger();
        QCOMPARE(f.messages.texts().back(), std::string("Nothing to Export."));

        f.find();
        f.desktop.saveAnswer = root(f.tree) + "/details.rtf";
        f.action("mExportDetail")->trigger();
        QCOMPARE(f.desktop.lastSuffix, QString("rtf"));
        const std::string rtf = f.tree.read("details.rtf");
        QVERIFY(rtf.rfind("{\\rtf1", 0) == 0);
        QVERIFY(rtf.find("\\red255\\green0\\blue0;") != std::string::npos);  // the hits' red
        f.desktop.saveAnswer = root(f.tree) + "/details.txt";
        f.action("mExportDetail")->trigger();
        const std::string plain = f.tree.read("details.txt");
        QVERIFY2(plain.find("/a.txt  (2 Found)\r\n00000001 | id=1 id=22") != std::string::npos, plain.c_str());
    }
};

QTEST_MAIN(ResultActionsTest)
#include "ResultActionsTest.moc"

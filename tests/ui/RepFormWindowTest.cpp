// The window's own rules: option boxes, sorting, the preview's pages and
// sections, the divider, the desktop actions and the settings kept between
// sessions.

#include <QDialog>
#include <QHeaderView>
#include <QMenu>
#include <QMouseEvent>
#include <QThreadPool>
#include <QTimer>
#include <QTreeView>
#include <sys/time.h>

#include <QMenu>

#include "UiTestSupport.h"
#include "ui/platform/FileDialog.h"
#include "ui/models/ResultsView.h"

using namespace vantorel;
using namespace vantorel::test;

namespace {

void setModified(const std::string& path, std::time_t when) {
    const struct timeval times[2] = {{when, 0}, {when, 0}};
    ::utimes(path.c_str(), times);
}

void showWindow(FormFixture& f) {
    f.showActive();
    f.form->resize(900, 700);  // larger than the test screen, which showing it fits
}

void clickHeader(FormFixture& f, int column) {
    QHeaderView* header = f.child<QTreeView>("ListView1")->header();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      QPoint(header->sectionViewportPosition(column) + 4, header->height() / 2));
}

void dragDivider(FormFixture& f, int by) {
    QWidget* line = f.child("DragLine");
    const struct { QEvent::Type type; QPointF at; Qt::MouseButton button; Qt::MouseButtons held; } steps[] = {
        {QEvent::MouseButtonPress, {10, 2}, Qt::LeftButton, Qt::LeftButton},
        {QEvent::MouseMove, {10, 2. + by}, Qt::NoButton, Qt::LeftButton},
        {QEvent::MouseButtonRelease, {10, 2. + by}, Qt::LeftButton, Qt::NoButton}};
    for (const auto& s : steps) {
        QMouseEvent event(s.type, s.at, line->mapToGlobal(s.at), s.button, s.held, Qt::NoModifier);
        QApplication::sendEvent(line, &event);
    }
}

}  // namespace

class RepFormWindowTest : public QObject {
    Q_OBJECT

private slots:
    void regularExpressionModeSwitchesWholeWordsExtractAndCaption() {
        FormFixture f;
        auto* regex = f.child<QCheckBox>("RegExpFind");
        for (const bool checked : {false, true, false}) {
            if (regex->isChecked() != checked)
                QTest::mouseClick(regex, Qt::LeftButton, {}, QPoint(4, regex->height() / 2));
            QCOMPARE(regex->isChecked(), checked);
            QCOMPARE(f.child<QLabel>("Findcaption")->text(), QString(checked ? "Reg Ex:" : "Find:"));
            QCOMPARE(f.child("WholeWordsChk")->isEnabled(), !checked);
            QCOMPARE(f.button("ExtrBtn")->isEnabled(), checked);
        }
        QCOMPARE(f.child<QLabel>("VLabel")->text(), QString("Version " VANTOREL_VERSION));
        QCOMPARE(f.form->windowTitle(), QString("Vantorel"));
    }

    void historiesPutNewEntriesOnTopWithoutDuplicates() {
        FormFixture f;
        ui::HistoryCombo* find = f.combo("FindText");
        QCOMPARE(find->limit(), 20);
        QCOMPARE(f.combo("StartDir")->limit(), 10);
        find->setEditText("typing");
        for (int i = 0; i < 25; ++i) find->remember(QString("entry %1").arg(i));
        QCOMPARE(find->count(), 20);
        QCOMPARE(find->itemText(0), QString("entry 24"));
        QCOMPARE(find->itemText(19), QString("entry 5"));
        find->remember("entry 10");
        QCOMPARE(find->count(), 20);
        QCOMPARE(find->itemText(0), QString("entry 10"));
        QCOMPARE(find->findText("entry 10"), 0);
        QCOMPARE(find->currentText(), QString("typing"));  // what is being typed stays
    }

    void sortingByAColumnKeepsTheTextsAndEachColumnsDirection() {
        TempTree tree;
        // name: matches, size; modified: s9 newest, s100 oldest.
        setModified(tree.write("s9.txt", "xxxxx...."), 3000000);
        setModified(tree.write("s10.txt", "x........."), 2000000);
        setModified(tree.write("s100.txt", std::string(20, 'x') + std::string(80, '.')), 1000000);
        FormFixture f;
        showWindow(f);
        QVERIFY(f.run(root(tree), "*.txt", "x"));
        QCOMPARE(f.column(0), QStringList({"s10.txt", "s100.txt", "s9.txt"}));
        QStringList before = f.column(4);
        clickHeader(f, 3);  // "File Size", first click: descending, as numbers
        QCOMPARE(f.column(3), QStringList({"100", "10", "9"}));
        QCOMPARE(f.column(0), QStringList({"s100.txt", "s10.txt", "s9.txt"}));
        clickHeader(f, 3);
        QCOMPARE(f.column(3), QStringList({"9", "10", "100"}));
        clickHeader(f, 4);  // "Modified": its own direction, newest first
        QCOMPARE(f.column(0), QStringList({"s9.txt", "s10.txt", "s100.txt"}));
        clickHeader(f, 0);  // "File Name": as text
        QCOMPARE(f.column(0), QStringList({"s9.txt", "s100.txt", "s10.txt"}));
        // Every row still shows its own texts.
        QStringList dates = f.column(4);
        dates.sort();
        before.sort();
        QCOMPARE(dates, before);
        for (int r = 0; r < f.rows().rowCount(); ++r)
            QCOMPARE(f.column(0)[r], "s" + f.column(3)[r] + ".txt");
    }

    void singleFilePreviewPagesThroughTheHits() {
        TempTree tree;
        const std::string deep = "a_folder_with_a_rather_long_name_for_the_heading/and_a_second_level_of_folders/";
        tree.write(deep + "p.txt", "hit a\nhit b\nhit c\nhit d\nhit e\n");
        tree.write(deep + "q.txt", "one hit\n");
        FormFixture f;
        showWindow(f);
        f.action("mAllFound")->trigger();  // one file at a time
        QVERIFY(!f.form->settings().PreviewAll);
        f.form->settings().HitsPerPage = 2;
        f.setInputs(root(tree), "*.txt", "hit");
        QSignalSpy shown(f.form.get(), &ui::RepForm::previewShown);
        QVERIFY(f.runBy("FindBtn"));
        QVERIFY(shown.count() > 0 || shown.wait());  // the first file straight after the run
        auto* label = f.child<QLabel>("PreviewLbl");
        auto* back = f.button("LineBackButton");
        auto* forward = f.button("LineFwdButton");
        const QString folder = root(tree) + "/" + QString::fromStdString(deep);
        const QString path = folder + "p.txt";
        QCOMPARE(label->text(), " Results 1-2: " + path);
        QCOMPARE(f.pane()->toPlainText(), QString("00000001 | <hit> a\n00000002 | <hit> b").remove('<').remove('>'));
        QVERIFY(forward->isEnabled() && !back->isEnabled());
        auto turn = [&](QAbstractButton* button) {
            shown.clear();
            QTest::mouseClick(button, Qt::LeftButton);
            return shown.wait();
        };
        QVERIFY(turn(forward));
        QCOMPARE(label->text(), " Results 3-4: " + path);
        QCOMPARE(f.pane()->toPlainText(), QString("00000003 | hit c\n00000004 | hit d"));
        QVERIFY(back->isEnabled());
        QVERIFY(turn(forward));
        QCOMPARE(label->text(), " Results 5-5: " + path);
        QVERIFY(!forward->isEnabled());
        QVERIFY(turn(back));
        QCOMPARE(label->text(), " Results 3-4: " + path);

        // Arrow keys move the selection and show the new file from its first page.
        auto* view = f.child<ui::ResultsView>("ListView1");
        view->setFocus();
        shown.clear();
        QTest::keyClick(view, Qt::Key_Down);
        QVERIFY(shown.wait());
        QCOMPARE(label->text(), " Results 1-1: " + folder + "q.txt");
        // Ctrl+A selects every row.
        QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(view->selectionModel()->selectedRows().size(), 2);

        // A narrow heading keeps its numbers and shortens the path in the middle.
        f.form->resize(420, 700);
        QTRY_VERIFY(label->text().contains("..."));
        QVERIFY(label->text().startsWith(" Results 1-1: /"));
        QVERIFY(label->text().endsWith("/q.txt"));

        // A file that cannot be read any more is reported and the pane stays.
        const QString before = f.pane()->toPlainText();
        std::remove(tree.path(deep + "q.txt").c_str());
        f.clickRow(1);
        QTRY_COMPARE(f.messages.texts(), std::vector<std::string>({"Unable to show file."}));
        QCOMPARE(f.pane()->toPlainText(), before);
    }

    void combinedPreviewHeadsEachSectionAndSaysWhenItIsStale() {
        TempTree tree;
        tree.write("p.txt", "hit a\nhit b\nhit c\n");
        tree.write("q.txt", "one hit\n");
        FormFixture f;
        QVERIFY(f.form->settings().PreviewAll && f.action("mAllFound")->isChecked());
        f.form->settings().HitsPerPage = 2;
        QVERIFY(f.run(root(tree), "*.txt", "hit"));
        const QString text = f.pane()->toPlainText();
        QVERIFY2(text.startsWith(root(tree) + "/p.txt  (3 Found - 2 Shown)\n00000001 | hit a\n00000002 | hit b\n\n"),
                 qPrintable(text));
        QVERIFY(text.contains(root(tree) + "/q.txt  (1 Found)\n00000001 | one hit"));
        QVERIFY(!text.contains("hit c"));

        f.action("mAllFound")->trigger();  // off: the selected file's page
        f.action("mAllFound")->trigger();  // on again
        QCOMPARE(f.pane()->toPlainText(), QString("Preview will not be updated until the search is performed again."));
        QVERIFY(f.child<QLabel>("PreviewLbl")->text().isEmpty());

        // "Only List Files with Matches": the check mark is the opposite of the flag.
        QVERIFY(f.action("mShowAll")->isChecked());
        f.action("mShowAll")->trigger();
        QVERIFY(f.form->settings().ShowAll);
        tree.write("r.txt", "nothing\n");
        QVERIFY(f.runBy("FindBtn"));
        QCOMPARE(f.column(0), QStringList({"p.txt", "q.txt", "r.txt"}));
        QCOMPARE(f.column(2), QStringList({"3", "1", "0"}));
    }

    void switchingPreviewModesShowsOneStateAtATime() {
        TempTree tree;
        tree.write("p.txt", "hit a\n");
        tree.write("q.txt", "one hit\n");
        FormFixture f;
        showWindow(f);
        auto* label = f.child<QLabel>("PreviewLbl");
        auto settle = [] {  // pages and sections are built on the pool
            QThreadPool::globalInstance()->waitForDone();
            for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
        };
        f.setInputs(root(tree), "*.txt", "hit");

        // A run one file at a time, then combined mode on: the notice alone,
        // whatever row is clicked.
        f.action("mAllFound")->trigger();
        QVERIFY(f.runBy("FindBtn"));
        settle();
        QVERIFY(!label->text().isEmpty());
        f.action("mAllFound")->trigger();
        const QString notice = "Preview will not be updated until the search is performed again.";
        QCOMPARE(f.pane()->toPlainText(), notice);
        f.clickRow(1);
        settle();
        QCOMPARE(f.pane()->toPlainText(), notice);
        QVERIFY(label->text().isEmpty());

        // A combined run, then combined mode off with no row selected: nothing.
        QVERIFY(f.runBy("FindBtn"));
        QVERIFY(f.pane()->toPlainText().contains("p.txt  (1 Found)"));
        f.child<ui::ResultsView>("ListView1")->setCurrentIndex(QModelIndex());
        f.action("mAllFound")->trigger();
        settle();
        QCOMPARE(f.pane()->toPlainText(), QString());
        QVERIFY(label->text().isEmpty());
    }

    void combinedPreviewScrollsToASectionAndBuildsLaterOnesOnDemand() {
        TempTree tree;
        std::string many;
        for (int i = 0; i < 80; ++i) many += "hit " + std::to_string(i) + "\n";
        tree.write("a.txt", many);
        tree.write("b.txt", many);
        tree.write("c.txt", "one hit\n");
        FormFixture f;
        f.previewCharacters = 2500;  // room for the first two sections only
        f.restart();
        showWindow(f);
        QVERIFY(f.run(root(tree), "*.txt", "hit"));
        QCOMPARE(f.rows().previewAnchorAt(2), -1);
        const QString notice = "The preview holds the files above. Click a later file in the list to see its matches here.";
        QVERIFY2(f.pane()->toPlainText().endsWith(notice + "\n\n"), qPrintable(f.pane()->toPlainText().right(200)));

        auto click = [&](int row) { f.clickRow(row, 1); };
        click(1);
        QCOMPARE(f.pane()->firstVisibleBlockNumber(), f.rows().previewAnchorAt(1));
        QVERIFY(f.sectionOf(1).startsWith(root(tree) + "/b.txt"));
        click(0);
        QCOMPARE(f.pane()->firstVisibleBlockNumber(), 0);

        QSignalSpy shown(f.form.get(), &ui::RepForm::previewShown);
        click(2);
        QVERIFY(shown.wait());
        const QString section = root(tree) + "/c.txt  (1 Found)\n00000001 | one hit";
        QVERIFY2(f.pane()->toPlainText().contains(notice + "\n\n" + section), qPrintable(f.pane()->toPlainText().right(300)));
        click(2);  // shown again in its place, not twice
        QVERIFY(shown.wait());
        QCOMPARE(f.pane()->toPlainText().count(section), 1);
    }

    void fileDialogFiltersInTheDesktopsForm() {
        QCOMPARE(ui::desktopFilter("CSV files (*.csv)|*.csv|All files (*.*)|*.*"),
                 QString("CSV files (*.csv);;All files (*)"));
        QCOMPARE(ui::desktopFilter("Applications|*.exe"), QString("Applications (*.exe)"));
        QCOMPARE(ui::desktopFilter(QString("Plain Text files (*.txt)") + QChar(u'\0') + "*.txt" + QChar(u'\0')),
                 QString("Plain Text files (*.txt)"));
    }

    void theDividerKeepsItsLimits() {
        FormFixture f;
        showWindow(f);
        const long inner = f.form->bandHeight();
        QVERIFY(inner - ui::RepForm::kPreviewMinimum > ui::RepForm::kListMinimum);
        dragDivider(f, -2000);
        QCOMPARE(f.form->dividerPosition(), ui::RepForm::kListMinimum);
        dragDivider(f, 3000);
        QCOMPARE(f.form->dividerPosition(), inner - ui::RepForm::kPreviewMinimum);
        dragDivider(f, -15);
        QVERIFY(f.form->dividerPosition() < inner - ui::RepForm::kPreviewMinimum &&
                f.form->dividerPosition() > ui::RepForm::kListMinimum);
        // The list and the preview follow the divider.
        QCOMPARE(f.child("DragLine")->geometry().top(), f.child("LowerFrame")->geometry().bottom() + 1);
        QCOMPARE(f.child("PrevFrame")->geometry().top(), f.child("DragLine")->geometry().bottom() + 1);
        // Too small a window for both: the preview keeps half of the band.
        f.form->resize(900, 360);
        QTRY_VERIFY(f.form->bandHeight() < ui::RepForm::kListMinimum + ui::RepForm::kPreviewMinimum);
        QCOMPARE(f.form->dividerPosition(), f.form->bandHeight() - f.form->bandHeight() / 2);
    }

    // What the mouse does on the headings and the divider, without it.
    void theListSortsAndTheDividerMovesFromTheKeyboard() {
        TempTree tree;
        tree.write("a.txt", "x");
        tree.write("b.txt", "x x x");
        FormFixture f;
        showWindow(f);
        QVERIFY(f.run(root(tree), "*.txt", "x"));
        QAction* byMatches = f.form->findChild<QAction*>("mSortBy2");
        QVERIFY(byMatches && byMatches->text() == "Matches" && f.form->findChild<QMenu*>("mSortBy"));
        byMatches->trigger();  // descending first, as a click on the heading
        QCOMPARE(f.column(0), QStringList({"b.txt", "a.txt"}));
        byMatches->trigger();
        QCOMPARE(f.column(0), QStringList({"a.txt", "b.txt"}));

        dragDivider(f, -2000);  // up to the list's minimum
        const long top = f.form->dividerPosition();
        QTest::keyClick(f.form.get(), Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(f.form->dividerPosition() > top);
        QTest::keyClick(f.form.get(), Qt::Key_Up, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(f.form->dividerPosition(), top);
    }

    void desktopActionsGoThroughTheDesktop() {
        TempTree tree;
        tree.write("a.txt", "hit\n");
        FormFixture f;
        showWindow(f);
        f.desktop.folderAnswer = root(tree);
        QTest::mouseClick(f.button("FolderButton"), Qt::LeftButton);
        QCOMPARE(f.desktop.folderTitle, QString("Select Folder:"));
        QCOMPARE(f.combo("StartDir")->currentText(), root(tree));
        QCOMPARE(f.form->settings().LastFolder, tree.root());
        f.desktop.folderAnswer.clear();  // cancelled: nothing changes
        f.combo("StartDir")->setEditText(root(tree));
        QTest::mouseClick(f.button("FolderButton"), Qt::LeftButton);
        QCOMPARE(f.desktop.folderStart, root(tree));
        QCOMPARE(f.combo("StartDir")->currentText(), root(tree));

        QVERIFY(f.run(root(tree), "*.txt", "hit"));
        f.clickRow(0, 1, true);
        QCOMPARE(f.desktop.opened.back(), QUrl::fromLocalFile(root(tree) + "/a.txt"));

        f.form->setStartFolder("\"/some folder/with \"quotes\"");
        QCOMPARE(f.combo("StartDir")->currentText(), QString("/some folder/with quotes"));
    }

    void failuresToOpenAreReported() {
        TempTree tree;
        tree.write("docs/a.txt", "hit\n");
        // The desktop's opener: notes its argument, exits with the status asked for.
        tree.write("bin/xdg-open", "#!/bin/sh\nstatus=$(cat \"$0.status\")\necho \"$1\" >> \"$0.log\"\nexit $status\n", 0755);
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", QByteArray::fromStdString(tree.path("bin")) + ":" + path);
        FormFixture f;
        f.systemDesktop = true;
        f.restart();
        QVERIFY(f.run(root(tree), "*.txt", "hit"));
        f.child<QTreeView>("ListView1")->setCurrentIndex(f.rows().index(0, 0));
        f.action("mAbout")->trigger();
        auto* about = f.form->findChild<QDialog*>("frmAbout");
        QVERIFY(about);

        const std::string unable = "Unable to find/view page.";
        struct Case {
            std::function<void()> open;
            QString target;
            std::string message;
        };
        const Case cases[] = {
            {[&] { f.action("mInstructions")->trigger(); }, VANTOREL_DATA_DIR "/readme.html", unable},
            {[&] { f.action("mweb")->trigger(); }, ui::kMakerPage, unable},
            {[&] { f.action("mweb2")->trigger(); }, ui::kProductPage, unable},
            {[&] { QTest::mouseClick(about->findChild<QLabel*>("Image1"), Qt::LeftButton); }, ui::kMakerPage, unable},
            {[&] { f.action("mmuExp")->trigger(); }, root(tree) + "/docs/", "Error Opening Folder."},
        };
        std::vector<std::string> expected;
        for (const std::string status : {"0", "4"}) {
            tree.write("bin/xdg-open.status", status);
            for (const Case& c : cases) {
                tree.write("bin/xdg-open.log", "");
                c.open();
                QTRY_COMPARE(QString::fromStdString(tree.read("bin/xdg-open.log")), c.target + "\n");
                if (status == "0") continue;
                expected.push_back(c.message);
                QTRY_COMPARE(f.messages.texts(), expected);
                QCOMPARE(f.messages.messages.back().icon, MessageIcon::Warning);
            }
        }
        qputenv("PATH", path);
    }

    void settingsSurviveARestart() {
        FormFixture f;
        f.combo("FindText")->setItems({"alpha", "beta"});
        f.combo("FindText")->setEditText("gamma");
        f.combo("RepText")->setItems({"delta"});
        f.combo("StartDir")->setItems({"/tmp", "/usr"});
        f.combo("StartDir")->setEditText("/usr");
        f.combo("FilterCombo")->setItems({"*.md", "*.rst"});
        f.combo("FilterCombo")->setEditText("*.rst");
        f.child<QCheckBox>("RegExpFind")->setChecked(true);
        f.child<QCheckBox>("CaseSensChk")->setChecked(true);
        f.action("mAllFound")->trigger();
        f.action("mShowAll")->trigger();
        f.form->move(40, 30);
        f.form->resize(760, 640);
        f.form->setDividerPosition(2600);
        f.restart();

        QCOMPARE(f.combo("FindText")->items(), std::vector<std::string>({"alpha", "beta"}));
        QCOMPARE(f.combo("RepText")->items(), std::vector<std::string>({"delta"}));
        QCOMPARE(f.combo("StartDir")->currentText(), QString("/usr"));
        QCOMPARE(f.combo("StartDir")->items(), std::vector<std::string>({"/tmp", "/usr"}));
        QCOMPARE(f.combo("FilterCombo")->currentText(), QString("*.rst"));
        QVERIFY(f.child<QCheckBox>("RegExpFind")->isChecked());
        QVERIFY(f.button("ExtrBtn")->isEnabled());  // the rule follows the restored box
        QVERIFY(f.child<QCheckBox>("CaseSensChk")->isChecked());
        QVERIFY(!f.child<QCheckBox>("WholeWordsChk")->isChecked());
        QVERIFY(!f.form->settings().PreviewAll && !f.action("mAllFound")->isChecked());
        QVERIFY(f.form->settings().ShowAll && !f.action("mShowAll")->isChecked());
        QCOMPARE(f.form->size(), QSize(760, 640));
        QCOMPARE(f.form->pos(), QPoint(40, 30));
        QCOMPARE(f.form->dividerPosition(), 2600L);
    }

    void theAboutBoxComesUpOnceOnTheFirstRun() {
        FormFixture f;
        f.form->show();
        QTRY_VERIFY(f.form->findChild<QDialog*>("frmAbout") && f.form->findChild<QDialog*>("frmAbout")->isVisible());
        auto* about = f.form->findChild<QDialog*>("frmAbout");
        QCOMPARE(about->windowTitle(), QString("About Vantorel"));
        const QString version = about->findChild<QLabel*>("lblVersion")->text();
        QVERIFY(version.startsWith("Version ") && version.contains('-'));
        QTest::mouseClick(about->findChild<QAbstractButton*>("CmdOK"), Qt::LeftButton);
        QTRY_VERIFY(!f.form->findChild<QDialog*>("frmAbout"));
        f.restart();
        f.form->show();
        QVERIFY(!f.child<QTimer>("SplashTimer")->isActive());
    }
};

QTEST_MAIN(RepFormWindowTest)
#include "RepFormWindowTest.moc"

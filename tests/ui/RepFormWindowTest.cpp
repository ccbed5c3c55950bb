// The window's own rules: option boxes, histories, the preview's pages and
// sections, sorting and the divider from the keyboard, failures to open, and
// the settings kept between sessions.

#include <QDialog>
#include <QHeaderView>
#include <QMenu>
#include <QMouseEvent>
#include <QThreadPool>
#include <QTimer>
#include <QTreeView>

#include "UiTestSupport.h"
#include "ui/platform/FileDialog.h"
#include "ui/models/ResultsView.h"

using namespace vantorel;
using namespace vantorel::test;

namespace {

void showWindow(FormFixture& f) {
    f.showActive();
    f.form->resize(900, 700);  // larger than the test screen, which showing it fits
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
};

QTEST_MAIN(RepFormWindowTest)
#include "RepFormWindowTest.moc"

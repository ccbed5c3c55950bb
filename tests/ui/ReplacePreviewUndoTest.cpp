// Preview Replace and Undo Last Replace, driven through the window's
// controls with every question answered through the message seam.

#include <QAbstractButton>
#include <QLabel>
#include <QTableView>
#include <QTemporaryDir>

#include "UiTestSupport.h"
#include "results/ChangeListing.h"
#include "ui/models/ChangedLinesModel.h"
#include "ui/windows/ReplacePreviewForm.h"

using namespace vantorel;
using namespace vantorel::test;

class ReplacePreviewUndoTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> state_;  // each test's own undo journal

private slots:
    void init() {
        state_ = std::make_unique<QTemporaryDir>();
        qputenv("VANTOREL_CONFIG_HOME", state_->path().toUtf8());
    }

    void previewShowsEachFilesChangesAndReplacesOnlyTheTickedOnes() {
        TempTree tree;
        tree.write("a.txt", "one cat\ntwo\n");
        tree.write("b.txt", "cat and cat\n");
        tree.write("c.txt", "no match\n");
        FormFixture f;
        QVERIFY(f.run(root(tree), "*.txt", "cat", "dog", "PreviewBtn"));
        QVERIFY(f.messages.questions.empty());  // nothing asked, nothing written
        QCOMPARE(f.status(), QString("3 files processed, 3 occurences found in 2 file(s)"));

        ui::ReplacePreviewForm* preview = f.form->previewWindow();
        QVERIFY(preview && preview->isVisible());
        QCOMPARE(preview->files().rowCount(), 2);
        QSignalSpy shown(preview, &ui::ReplacePreviewForm::changesShown);
        if (preview->changes().rowCount() == 0) QVERIFY(shown.wait(5000));
        const std::vector<ChangeRow>& rows = preview->changes().rows();
        QCOMPARE(rows.size(), std::size_t{4});  // the hunk's head, -one cat, +one dog, two
        QCOMPARE(rows[1].text, std::string("one cat"));
        QCOMPARE(rows[1].marks, (std::vector<std::pair<std::uint32_t, std::uint32_t>>{{4, 7}}));
        QCOMPARE(rows[2].text, std::string("one dog"));
        QCOMPARE(rows[2].kind, ChangeRow::Kind::Added);

        preview->showFile(1);  // paging on to the next file
        QVERIFY(shown.wait(5000));
        QCOMPARE(preview->changes().rows()[2].text, std::string("dog and dog"));

        preview->files().setData(preview->files().index(1, 0), Qt::Unchecked, Qt::CheckStateRole);
        f.messages.answers = {true};
        QSignalSpy ended(f.form.get(), &ui::RepForm::runEnded);
        QTest::mouseClick(preview->findChild<QAbstractButton*>("RepTickedBtn"), Qt::LeftButton);
        QVERIFY(ended.wait(20000));
        QCOMPARE(f.messages.questions.size(), std::size_t{1});
        QCOMPARE(f.messages.questions.back().text, std::string("Replace 1 occurences in 1 file(s) ?"));
        QCOMPARE(f.messages.texts().back(), std::string("1 files processed, 1 occurences changed in 1 file(s)"));
        QCOMPARE(tree.read("a.txt"), std::string("one dog\ntwo\n"));
        QCOMPARE(tree.read("b.txt"), std::string("cat and cat\n"));
    }

    void undoLastReplaceAsksWithTheRunsSummaryAndSaysWhatItLeft() {
        TempTree tree;
        tree.write("a.txt", "one cat\n");
        tree.write("b.txt", "cat\n");
        FormFixture f;
        QAction* undo = f.action("mUndoReplace");
        QVERIFY(!undo->isEnabled());
        f.messages.answers = {true};
        QVERIFY(f.run(root(tree), "*.txt", "cat", "dog", "RepBtn"));
        QVERIFY(undo->isEnabled());
        tree.write("b.txt", "edited\n");

        f.messages.answers = {true};
        QSignalSpy ended(f.form.get(), &ui::RepForm::undoEnded);
        undo->trigger();
        QVERIFY(ended.wait(20000));
        const std::string question = f.messages.questions.back().text;
        QVERIFY2(question.starts_with("Undo the Replace of "), question.c_str());
        QVERIFY(question.ends_with("?\r\n\r\n2 file(s) changed in " + tree.root() + " (*.txt)\r\n\"cat\" -> \"dog\""));
        QCOMPARE(f.messages.messages.back().title, std::string("Undo Last Replace"));
        QCOMPARE(f.messages.texts().back(), "1 file(s) restored. 1 file(s) left as they were.\r\n" +
                                                tree.path("b.txt") + ": changed since the replace: left as it is");
        QCOMPARE(f.status(), QString("1 file(s) restored. 1 file(s) left as they were."));
        QVERIFY(!undo->isEnabled());
        QVERIFY(f.button("RepBtn")->isEnabled());
    }
};

QTEST_MAIN(ReplacePreviewUndoTest)
#include "ReplacePreviewUndoTest.moc"

// The library window driven through its controls: save, update, remove
// and what a click shows.

#include "UiTestSupport.h"
#include "ui/windows/RegExLibFrm.h"

using namespace vantorel;
using namespace vantorel::test;

namespace {

struct LibraryFixture : LibraryWindowFixture<ui::RegExLibFrm> {
    explicit LibraryFixture(const QByteArray& file) : LibraryWindowFixture({{"RegEx.txt", file}}) {}
    QByteArray file() const { return LibraryWindowFixture::file("RegEx.txt"); }
    QString text(const char* box) const { return child<QLineEdit>(box)->text(); }
};

}  // namespace

class RegExLibFrmTest : public QObject {
    Q_OBJECT

private slots:
    void saveAppendsThenACaseDifferentNameUpdatesInPlace() {
        LibraryFixture f("digits\t\\d+\t\r\nfoo\told\t\r\n");
        f.type("REName", "Words");
        f.type("REtxt", "\\w+");
        f.click("lvButtons_H2");
        QCOMPARE(f.entries(), QStringList({"digits", "foo", "Words"}));
        QCOMPARE(f.list()->currentRow(), 2);

        f.messages.answers = {true};
        f.type("REName", "FOO");
        f.type("REtxt", "new");
        f.type("RepTxt", "$&!");
        f.click("lvButtons_H2");
        QCOMPARE(f.messages.questions.size(), std::size_t{1});
        QCOMPARE(f.entries(), QStringList({"digits", "FOO", "Words"}));
        QCOMPARE(f.file(), QByteArray("digits\t\\d+\t\r\nFOO\tnew\t$&!\r\nWords\t\\w+\t\r\n"));
    }

    void aClickShowsAnEntryAndRemoveAsksFirst() {
        LibraryFixture f("a\t1\tx\r\nb\t2\t\r\n");
        // Nothing selected: nothing to remove.
        f.click("DelBtn");
        QVERIFY(f.messages.questions.empty());
        f.clickEntry(0);
        QCOMPARE(f.text("REName"), QString("a"));
        QCOMPARE(f.text("REtxt"), QString("1"));
        QCOMPARE(f.text("RepTxt"), QString("x"));
        f.click("DelBtn");  // No
        QCOMPARE(f.entries(), QStringList({"a", "b"}));
        f.messages.answers = {true};
        f.click("DelBtn");
        QCOMPARE(f.entries(), QStringList({"b"}));
        QCOMPARE(f.file(), QByteArray("b\t2\t\r\n"));
    }
};

QTEST_MAIN(RegExLibFrmTest)
#include "RegExLibFrmTest.moc"

#pragma once
// Doubles and helpers for the window tests: a message host that records
// every message and answers questions from a script, a desktop that records
// what it is asked to open, and a window on a temporary settings file.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/MessageHost.h"
#include "library/LibraryState.h"
#include "support/Answering.h"
#include "support/TempTree.h"
#include "ui/DesktopServices.h"
#include "ui/HistoryCombo.h"
#include "ui/PreviewPane.h"
#include "ui/RepForm.h"
#include "ui/ResultsModel.h"

namespace vantorel::test {

class RecordingMessages : public Answering<> {
public:
    bool offWindowThread = false;  // set when anything arrived off the window's thread

    void showMessage(const Message& message) override {
        check();
        Answering::showMessage(message);
    }
    bool askYesNo(const Message& question) override {
        check();
        return Answering::askYesNo(question);
    }

private:
    void check() { offWindowThread = offWindowThread || QThread::currentThread() != qApp->thread(); }
};

class RecordingDesktop : public ui::DesktopServices {
public:
    std::vector<QUrl> opened;
    QString folderAnswer;
    QString folderTitle;
    QString folderStart;

    void openUrl(const QUrl& url, QObject*, std::function<void(bool)> done) override {
        opened.push_back(url);
        if (done) done(true);
    }
    QString chooseFolder(QWidget*, const QString& title, const QString& start) override {
        folderTitle = title;
        folderStart = start;
        return folderAnswer;
    }
    // What the file dialogs are asked and answer ("" is a cancel).
    QString saveAnswer;
    QString openAnswer;
    QString lastFilter;
    QString lastSuffix;
    int saveDialogs = 0;
    // Programs started, each with its arguments.
    std::vector<QStringList> started;
    bool startSucceeds = true;

    QString chooseFileToSave(QWidget*, const QString& filter, const QString& suffix, const QString&) override {
        ++saveDialogs;
        lastFilter = filter;
        lastSuffix = suffix;
        return saveAnswer;
    }
    QString chooseFileToOpen(QWidget*, const QString& filter, const QString&) override {
        lastFilter = filter;
        return openAnswer;
    }
    bool startProgram(const QString& program, const QStringList& arguments) override {
        started.push_back(QStringList{program} + arguments);
        return startSucceeds;
    }
};

// The child named `name` of a window; the test ends at once when there is none.
template <class T = QWidget>
T* namedChild(const QObject* window, const char* name) {
    T* found = window->findChild<T*>(QString::fromLatin1(name));
    if (!found) qFatal("no child named %s", name);
    return found;
}

// A temporary tree's root as the window shows it.
inline QString root(const TempTree& tree) { return QString::fromStdString(tree.root()); }

// A file written whole, and a file's bytes (empty when it cannot be read).
inline bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile out(path);
    return out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size();
}
inline QByteArray fileBytes(const QString& path) {
    QFile in(path);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

// Clicks, and when `twice` double-clicks, an entry of a list.
inline void clickEntry(QListWidget* list, int row, bool twice = false) {
    const QPoint at = list->visualItemRect(list->item(row)).center();
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    if (twice) QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
}

// A window on its own settings file, with recording doubles.
struct FormFixture {
    QTemporaryDir config;
    RecordingMessages messages;
    RecordingDesktop desktop;
    std::unique_ptr<ui::RepForm> form;
    long long previewCharacters = 3'000'000;
    std::string programFolder = VANTOREL_DATA_DIR;
    bool systemDesktop = false;  // the window's own desktop instead of the recording one

    FormFixture() { open(); }

    void open() {
        ui::RepFormOptions options;
        options.messages = &messages;
        options.desktop = systemDesktop ? nullptr : &desktop;
        options.settingsFile = (config.path() + QStringLiteral("/settings.reg")).toStdString();
        options.programFolder = programFolder;
        options.previewCharacters = previewCharacters;
        form = std::make_unique<ui::RepForm>(options);
    }
    // Closes the window (which saves the settings) and opens a new one.
    void restart() {
        form->close();
        form.reset();
        open();
    }

    template <class T = QWidget>
    T* child(const char* name) const {
        return namedChild<T>(form.get(), name);
    }
    // Shows the window, active, without the first run's about box.
    void showActive() {
        child<QTimer>("SplashTimer")->stop();
        form->show();
        form->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(form.get()));
        child<QTimer>("SplashTimer")->stop();
    }
    ui::HistoryCombo* combo(const char* name) const { return child<ui::HistoryCombo>(name); }
    QAbstractButton* button(const char* name) const { return child<QAbstractButton>(name); }
    QAction* action(const char* name) const { return child<QAction>(name); }
    ui::PreviewPane* pane() const { return child<ui::PreviewPane>("RTB1"); }
    QString status() const { return child<QLabel>("StatusPanel")->text(); }
    ui::ResultsModel& rows() const { return *form->results(); }

    void setInputs(const QString& folder, const QString& filter, const QString& find, const QString& replace = {}) {
        combo("StartDir")->setEditText(folder);
        combo("FilterCombo")->setEditText(filter);
        combo("FindText")->setEditText(find);
        combo("RepText")->setEditText(replace);
    }
    // Clicks a button and waits until the run it starts has ended.
    bool runBy(const char* buttonName) {
        QSignalSpy ended(form.get(), &ui::RepForm::runEnded);
        QTest::mouseClick(button(buttonName), Qt::LeftButton);
        return ended.count() > 0 || ended.wait(20000);
    }
    // Fills the inputs, clicks `buttonName` and waits until the run has ended.
    bool run(const QString& folder, const QString& filter, const QString& find, const QString& replace = {},
             const char* buttonName = "FindBtn") {
        setInputs(folder, filter, find, replace);
        return runBy(buttonName);
    }
    // The preview's line that a row leads to.
    QString sectionOf(int row) const {
        return pane()->document()->findBlockByNumber(rows().previewAnchorAt(row)).text();
    }
    // Clicks (or double-clicks) a cell of the results list.
    void clickRow(int row, int column = 0, bool twice = false) const {
        auto* view = child<QAbstractItemView>("ListView1");
        const QPoint at = view->visualRect(rows().index(row, column)).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
        if (twice) QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, at);
    }
    // No run under way: the run buttons, the list and the preview take input again.
    bool idle() const {
        return button("FindBtn")->isEnabled() && !button("StopBtn")->isEnabled() && child("ListView1")->isEnabled() &&
               pane()->isEnabled();
    }
    QStringList column(int column) const {
        QStringList texts;
        for (int r = 0; r < rows().rowCount(); ++r) texts << rows().index(r, column).data().toString();
        return texts;
    }
};

// A library, batch jobs or tester window on its own program folder, which holds `files` (name, bytes) when it opens.
template <class Window>
struct LibraryWindowFixture {
    QTemporaryDir folder;
    RecordingMessages messages;
    RecordingDesktop desktop;
    LibraryState state;
    std::unique_ptr<Window> window;

    explicit LibraryWindowFixture(const std::vector<std::pair<const char*, QByteArray>>& files = {}) {
        for (const auto& [name, bytes] : files)
            if (!bytes.isEmpty()) writeBytes(folder.filePath(QString::fromLatin1(name)), bytes);
        if constexpr (std::is_constructible_v<Window, LibraryState&, std::string, MessageHost*, RecordingDesktop*>)
            window = std::make_unique<Window>(state, folder.path().toStdString(), &messages, &desktop);
        else
            window = std::make_unique<Window>(state, folder.path().toStdString(), &messages);
    }
    QByteArray file(const char* name) const { return fileBytes(folder.filePath(QString::fromLatin1(name))); }
    template <class T = QWidget>
    T* child(const char* name) const {
        return namedChild<T>(window.get(), name);
    }
    QListWidget* list() const { return child<QListWidget>("RegExList"); }
    void click(const char* button) const { QTest::mouseClick(child<QAbstractButton>(button), Qt::LeftButton); }
    // Replaces a box's text by typing it.
    void type(const char* box, const QString& text) const {
        child<QLineEdit>(box)->clear();
        QTest::keyClicks(child<QLineEdit>(box), text);
    }
    void clickEntry(int row, bool twice = false) const { test::clickEntry(list(), row, twice); }
    QStringList entries() const {
        QStringList out;
        for (int i = 0; i < list()->count(); ++i) out << list()->item(i)->text();
        return out;
    }
};

// Drags URLs over a widget and drops them there; true when the drop was taken.
inline bool dropUrls(QWidget* target, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    const QPoint at(10, 10);
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent dropped(QPointF(at), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &dropped);
    return dropped.isAccepted();
}

// Calls `act` with the modal window (a library, a message box) once it is
// up, from inside its own event loop.
inline void whenModal(std::function<void(QWidget*)> act) {
    QTimer::singleShot(0, [act] {
        QWidget* modal = nullptr;
        for (int i = 0; i < 500 && !(modal = QApplication::activeModalWidget()); ++i) QTest::qWait(10);
        act(modal);
    });
}

}  // namespace vantorel::test

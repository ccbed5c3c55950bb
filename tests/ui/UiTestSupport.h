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
#include <QPaintEngine>
#include <QPainter>
#include <QStyleFactory>
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
#include "ui/windows/BatchFrm.h"
#include "ui/platform/DesktopServices.h"
#include "ui/windows/ExtractForm.h"
#include "ui/widgets/HistoryCombo.h"
#include "ui/widgets/PreviewPane.h"
#include "ui/windows/RegExLibFrm.h"
#include "ui/windows/RegExTestFrm.h"
#include "ui/windows/RepForm.h"
#include "ui/windows/ReplacePreviewForm.h"
#include "ui/models/ResultsModel.h"
#include "ui/windows/frmAbout.h"
#include "ui/windows/frmOptions.h"

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

    void openUrl(const QUrl& url, QObject*, std::function<void(bool)> done) override {
        opened.push_back(url);
        if (done) done(true);
    }
    QString chooseFolder(QWidget*, const QString&, const QString&) override { return {}; }
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

// A file written whole, and a file's bytes (empty when it cannot be read).
inline bool writeBytes(const QString& path, const QByteArray& bytes) {
    QFile out(path);
    return out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size();
}
inline QByteArray fileBytes(const QString& path) {
    QFile in(path);
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

// A temporary tree's root as the window shows it.
inline QString root(const TempTree& tree) { return QString::fromStdString(tree.root()); }

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

// Calls `act` with the modal window (a library, a message box) once it is
// up, from inside its own event loop.
inline void whenModal(std::function<void(QWidget*)> act) {
    QTimer::singleShot(0, [act] {
        QWidget* modal = nullptr;
        for (int i = 0; i < 500 && !(modal = QApplication::activeModalWidget()); ++i) QTest::qWait(10);
        act(modal);
    });
}

// ---- What a window shows ------------------------------------------------

// A dark desktop's palette (as a dark theme gives it).
inline QPalette darkPalette() {
    QPalette p;
    const QColor window(0x2b, 0x2b, 0x2b), base(0x1e, 0x1e, 0x1e), text(0xe6, 0xe6, 0xe6);
    for (auto [role, colour] : std::initializer_list<std::pair<QPalette::ColorRole, QColor>>{
             {QPalette::Window, window}, {QPalette::WindowText, text}, {QPalette::Base, base},
             {QPalette::AlternateBase, window}, {QPalette::Text, text}, {QPalette::Button, QColor(0x3a, 0x3a, 0x3a)},
             {QPalette::ButtonText, text}, {QPalette::Highlight, QColor(0x3d, 0x7a, 0xd6)},
             {QPalette::HighlightedText, Qt::white}, {QPalette::Light, QColor(0x55, 0x55, 0x55)},
             {QPalette::Midlight, QColor(0x48, 0x48, 0x48)}, {QPalette::Mid, QColor(0x30, 0x30, 0x30)},
             {QPalette::Dark, QColor(0x20, 0x20, 0x20)}, {QPalette::Shadow, Qt::black},
             {QPalette::ToolTipBase, base}, {QPalette::ToolTipText, text}, {QPalette::Link, QColor(0x6c, 0xb4, 0xff)},
             {QPalette::PlaceholderText, QColor(0xa0, 0xa0, 0xa0)}})
        p.setColor(role, colour);
    for (QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        p.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x80));
    return p;
}

// A text as a widget draws it: its colour, and where it falls in its window.
struct DrawnText {
    QString text;
    QColor colour;
    QRect rect;
    QFont font;
    const QWidget* widget = nullptr;
};

// Records the texts painted on it and nothing else.
class TextRecorder : public QPaintDevice {
public:
    std::vector<DrawnText> texts;
    explicit TextRecorder(QSize size) : size_(size) {}
    QPaintEngine* paintEngine() const override { return &engine_; }

protected:
    int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
            case PdmWidth: return size_.width();
            case PdmHeight: return size_.height();
            case PdmDpiX: case PdmDpiY: case PdmPhysicalDpiX: case PdmPhysicalDpiY: return 96;
            case PdmDepth: return 32;
            case PdmDevicePixelRatio: return 1;
            case PdmDevicePixelRatioScaled: return int(devicePixelRatioFScale());
            default: return QPaintDevice::metric(metric);
        }
    }

private:
    class Engine : public QPaintEngine {
    public:
        explicit Engine(TextRecorder& device) : QPaintEngine(AllFeatures), device_(device) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override {}
        Type type() const override { return User; }
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawImage(const QRectF&, const QImage&, const QRectF&, Qt::ImageConversionFlags) override {}
        void drawTiledPixmap(const QRectF&, const QPixmap&, const QPointF&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawPolygon(const QPoint*, int, PolygonDrawMode) override {}
        void drawRects(const QRectF*, int) override {}
        void drawRects(const QRect*, int) override {}
        void drawLines(const QLineF*, int) override {}
        void drawLines(const QLine*, int) override {}
        void drawEllipse(const QRectF&) override {}
        void drawPoints(const QPointF*, int) override {}
        void drawTextItem(const QPointF& at, const QTextItem& item) override {
            const QFontMetricsF metrics(item.font());
            const QRectF box(at.x(), at.y() - metrics.ascent(), item.width(), metrics.ascent() + metrics.descent());
            if (!item.text().trimmed().isEmpty())
                device_.texts.push_back({item.text(), state->pen().color(),
                                         state->transform().mapRect(box).toAlignedRect(), item.font(), nullptr});
        }

    private:
        TextRecorder& device_;
    };
    QSize size_;
    mutable Engine engine_{*this};
};

// Every text the enabled, visible widgets of a window draw where it can be
// seen (not scrolled away), each widget painted on its own.
inline std::vector<DrawnText> drawnTexts(QWidget* window) {
    std::vector<DrawnText> all;
    QList<QWidget*> widgets = window->findChildren<QWidget*>();
    widgets.prepend(window);
    for (QWidget* w : widgets) {
        if (!w->isVisible() || !w->isEnabled() || (w != window && w->isWindow())) continue;
        const QRegion seen = w->visibleRegion();
        if (seen.isEmpty()) continue;
        TextRecorder recorder(window->size());
        const QPoint offset = w->mapTo(window, QPoint(0, 0));
        w->render(&recorder, offset, QRegion(), QWidget::RenderFlags());
        for (DrawnText& text : recorder.texts)
            if (seen.translated(offset).contains(text.rect.center())) {
                text.widget = w;
                all.push_back(std::move(text));
            }
    }
    return all;
}

// The colour most of a rectangle of a window's picture has: the page behind
// a text. Near shades count as one, so that a gradient is one page.
inline QColor pageBehind(const QImage& picture, const QRect& rect, qreal scale) {
    struct Shade {
        int count = 0;
        long r = 0, g = 0, b = 0;
    };
    QHash<int, Shade> shades;
    const QRect pixels = QRect(rect.topLeft() * scale, rect.size() * scale).intersected(picture.rect());
    for (int y = pixels.top(); y <= pixels.bottom(); ++y)
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            Shade& shade = shades[(qRed(pixel) >> 4) << 8 | (qGreen(pixel) >> 4) << 4 | qBlue(pixel) >> 4];
            ++shade.count;
            shade.r += qRed(pixel), shade.g += qGreen(pixel), shade.b += qBlue(pixel);
        }
    Shade most;
    for (const Shade& shade : shades)
        if (shade.count > most.count) most = shade;
    return most.count ? QColor(int(most.r / most.count), int(most.g / most.count), int(most.b / most.count)) : QColor();
}

// Each of the program's windows on its own, with something in it to show:
// for the tests that look at every window alike.
struct WindowCatalogue {
    TempTree tree;  // the files the windows work on, and the library's folder
    RecordingMessages messages;
    RecordingDesktop desktop;
    LibraryState library;
    AppSettings settings;
    std::unique_ptr<FormFixture> form;
    std::unique_ptr<QWidget> window;

    static QStringList names() {
        return {"main", "options", "tester", "tester with an error", "preview", "library", "batch", "extract", "about"};
    }

    WindowCatalogue() {
        tree.write("site/notes.txt", "The colour of the sea\nno match here\nand the colour again\n");
        tree.write("site/sub/config.h", "#define COLOUR colour\n");
        tree.write("program/RegEx.txt", "Digits\t\\d+\t#\r\nDigits  \t[0-9]+\t\r\nColour\tcolour\tcolor\r\n");
        tree.write("program/BatchJobs.txt", "Tidy\tDigits\tColour\r\n");
    }

    // Opens the window `name`, shown and ready; null when it could not be.
    QWidget* open(const QString& name) {
        const std::string program = tree.path("program");
        QWidget* shown = nullptr;
        if (name == "main" || name == "preview") {
            form = std::make_unique<FormFixture>();
            form->child<QTimer>("SplashTimer")->stop();
            if (!form->run(root(tree) + "/site", "*", "colour", "color", name == "main" ? "FindBtn" : "PreviewBtn"))
                return nullptr;
            shown = name == "main" ? static_cast<QWidget*>(form->form.get()) : form->form->previewWindow();
            if (name == "main") form->showActive();
        } else if (name == "options") {
            window = std::make_unique<ui::frmOptions>(settings, messages);
        } else if (name.startsWith("tester")) {
            auto* tester = new ui::RegExTestFrm(library, program, &messages, &desktop);
            window.reset(tester);
            QSignalSpy updated(tester, &ui::RegExTestFrm::updated);
            tester->setSample("a1 b22\nc333");
            tester->findChild<QLineEdit*>("FText")->setText(name.endsWith("error") ? "a(b" : "(?<letter>[a-z])(\\d+)(x)?");
            tester->findChild<QLineEdit*>("RText")->setText("<$1>");
            if (!updated.wait(10000)) return nullptr;
        } else if (name == "library") {
            window = std::make_unique<ui::RegExLibFrm>(library, program, &messages);
        } else if (name == "batch") {
            window = std::make_unique<ui::BatchFrm>(library, program, &messages);
        } else if (name == "extract") {
            auto* extract = new ui::ExtractForm(desktop, messages);
            window.reset(extract);
            extract->appendText("colour\r\ncolour\r\n");
        } else if (name == "about") {
            window = std::make_unique<ui::frmAbout>(desktop, messages);
        }
        if (!shown) shown = window.get();
        if (!shown) return nullptr;
        shown->show();
        return QTest::qWaitForWindowExposed(shown) ? shown : nullptr;
    }
};

}  // namespace vantorel::test

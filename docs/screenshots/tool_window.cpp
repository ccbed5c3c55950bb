// Shows one of the tool windows alone, for the screenshots:
//   vantorel-tool-window library FOLDER          the library of FOLDER/RegEx.txt
//   vantorel-tool-window tester FOLDER [SAMPLE]  the tester, with a sample file's text
//   vantorel-tool-window batch FOLDER            the batch jobs of FOLDER/BatchJobs.txt

#include <QApplication>
#include <QFile>

#include "library/RegexTester.h"
#include "ui/windows/BatchFrm.h"
#include "ui/windows/RegExLibFrm.h"
#include "ui/windows/RegExTestFrm.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 3 || (args[1] != "library" && args[1] != "tester" && args[1] != "batch")) {
        qWarning("usage: %s library|tester|batch FOLDER [SAMPLE]", argv[0]);
        return 2;
    }
    vantorel::LibraryState state;
    const std::filesystem::path folder = args[2].toStdString();
    if (args[1] == "library") {
        vantorel::ui::RegExLibFrm library(state, folder);
        library.show();
        return app.exec();
    }
    if (args[1] == "batch") {
        vantorel::ui::BatchFrm batch(state, folder);
        batch.show();
        return app.exec();
    }
    vantorel::ui::RegExTestFrm tester(state, folder);
    if (args.size() > 3) tester.setSample(QString::fromStdString(vantorel::readSampleFile(args[3].toStdString(), 1 << 26).text));
    tester.show();
    return app.exec();
}

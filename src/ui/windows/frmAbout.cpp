#include "ui/windows/frmAbout.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QAbstractButton>

#include "ui/widgets/CommandButton.h"
#include "ui/platform/FileDialog.h"
#include "ui/widgets/Logo.h"
#include "ui/platform/ReadableText.h"
#include "ui/platform/ScreenFit.h"

namespace vantorel::ui {

QString frmAbout::versionText(const QString& version) {
    QStringList parts = version.split(QLatin1Char('.'));
    while (parts.size() < 3) parts << QStringLiteral("0");
    return QStringLiteral("Version ") + parts[0] + QLatin1Char('.') + parts[1] + QLatin1Char('-') + parts[2];
}

frmAbout::frmAbout(DesktopServices& desktop, MessageHost& messages, QWidget* parent)
    : QDialog(parent), desktop_(desktop), messages_(messages) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About ") + QString::fromUtf8(kProgramTitle));

    auto* image1 = new QLabel(this);
    image1->setObjectName(QStringLiteral("Image1"));
    image1->setPixmap(makerLogo(56));
    image1->setToolTip(QString::fromUtf8(kMakerPage));
    auto* image2 = new QLabel(this);
    image2->setObjectName(QStringLiteral("Image2"));
    image2->setPixmap(productLogo(72));
    image2->setToolTip(QString::fromUtf8(kProductPage));

    auto* title = new QLabel(QString::fromUtf8(kProgramTitle), this);
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.8);
    big.setBold(true);
    title->setFont(big);
    auto* version = new QLabel(versionText(QStringLiteral(VANTOREL_VERSION)), this);
    version->setObjectName(QStringLiteral("lblVersion"));
    auto* notice = new QLabel(QStringLiteral("Vantorel is freeware from Brimlark: use it and pass it on freely."), this);
    notice->setObjectName(QStringLiteral("lblFreeware"));
    auto* code = new QLabel(QStringLiteral("Project code: VNT-FRX"), this);
    code->setObjectName(QStringLiteral("lblProject"));
    auto* label3 = new QLabel(QStringLiteral("<a href=\"%1\">%1</a>").arg(QString::fromUtf8(kProductPage)), this);
    label3->setObjectName(QStringLiteral("Label3"));
    label3->setTextInteractionFlags(Qt::NoTextInteraction);  // the click goes through OpenPage
    label3->setCursor(Qt::PointingHandCursor);
    QAbstractButton* ok = makeCommandButton("CmdOK", QStringLiteral("OK"), this, true);
    connect(ok, &QAbstractButton::clicked, this, &QDialog::accept);

    for (QLabel* clickable : {image1, image2, label3}) {
        clickable->setCursor(Qt::PointingHandCursor);
        clickable->installEventFilter(this);
    }

    auto* layout = new QGridLayout(this);
    layout->addWidget(image2, 0, 0, 3, 1, Qt::AlignTop);
    layout->addWidget(title, 0, 1);
    layout->addWidget(version, 1, 1);
    layout->addWidget(notice, 2, 1);
    layout->addWidget(code, 3, 1);
    layout->addWidget(label3, 4, 1);
    layout->addWidget(image1, 5, 0, Qt::AlignBottom);
    layout->addWidget(ok, 5, 1, Qt::AlignRight | Qt::AlignBottom);
    layout->setHorizontalSpacing(18);
    setFixedSize(sizeHint());
    keepOnScreen(this);
    keepPaletteReadable();
}

bool frmAbout::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        const QString name = watched->objectName();
        // A failure is told also when the box has been closed meanwhile.
        QObject* receiver = parent() ? parent() : this;
        if (name == QLatin1String("Image1")) OpenPage(desktop_, messages_, QString::fromUtf8(kMakerPage), receiver);
        else if (name == QLatin1String("Image2") || name == QLatin1String("Label3"))
            OpenPage(desktop_, messages_, QString::fromUtf8(kProductPage), receiver);
        else return QDialog::eventFilter(watched, event);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

}  // namespace vantorel::ui

#include "ui/platform/GuiMessageHost.h"

#include <QGridLayout>
#include <QMessageBox>
#include <QSpacerItem>
#include <QStyle>

namespace vantorel::ui {
namespace {

QMessageBox::Icon iconOf(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::Information: return QMessageBox::Information;
        case MessageIcon::Warning: return QMessageBox::Warning;
        case MessageIcon::Critical: return QMessageBox::Critical;
        case MessageIcon::Question: return QMessageBox::Question;
        case MessageIcon::None: break;
    }
    return QMessageBox::NoIcon;
}

QString boxText(const std::string& text) {
    QString shown = QString::fromStdString(text);
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return shown;
}

// A box as wide as its title bar needs: the title in a bold font, the
// window's icon and its buttons, each about as wide as the bar is high (a
// short text would otherwise give a box whose title the window system cuts).
void makeRoomForTitle(QMessageBox& box) {
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    if (!grid) return;
    QFont bold = box.font();
    bold.setBold(true);
    const QStyle* style = box.style();
    const int room = QFontMetrics(bold).horizontalAdvance(box.windowTitle()) +
                     4 * style->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &box) +
                     2 * style->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, &box);
    const QMargins margins = grid->contentsMargins();
    grid->addItem(new QSpacerItem(room - margins.left() - margins.right(), 0, QSizePolicy::Minimum, QSizePolicy::Minimum),
                  grid->rowCount(), 0, 1, grid->columnCount());
}

}  // namespace

void GuiMessageHost::showMessage(const Message& message) {
    if (silenced_) return;
    QMessageBox box(iconOf(message.icon), QString::fromStdString(message.title), boxText(message.text),
                    QMessageBox::Ok, owner_);
    box.setTextFormat(Qt::PlainText);
    makeRoomForTitle(box);
    box.exec();
}

bool GuiMessageHost::askYesNo(const Message& question) {
    if (silenced_) return false;
    QMessageBox box(QMessageBox::Question, QString::fromStdString(question.title), boxText(question.text),
                    QMessageBox::Yes | QMessageBox::No, owner_);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::Yes);
    makeRoomForTitle(box);
    return box.exec() == QMessageBox::Yes;
}

}  // namespace vantorel::ui

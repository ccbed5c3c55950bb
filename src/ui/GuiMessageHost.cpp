#include "ui/GuiMessageHost.h"

#include <QMessageBox>

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

}  // namespace

void GuiMessageHost::showMessage(const Message& message) {
    if (silenced_) return;
    QMessageBox box(iconOf(message.icon), QString::fromStdString(message.title), boxText(message.text),
                    QMessageBox::Ok, owner_);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

bool GuiMessageHost::askYesNo(const Message& question) {
    if (silenced_) return false;
    QMessageBox box(QMessageBox::Question, QString::fromStdString(question.title), boxText(question.text),
                    QMessageBox::Yes | QMessageBox::No, owner_);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes;
}

}  // namespace vantorel::ui

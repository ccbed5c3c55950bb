#include "ui/CommandButton.h"

#include <QPushButton>

namespace vantorel::ui {

QAbstractButton* makeCommandButton(const char* objectName, const QString& caption, QWidget* parent) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(QString::fromLatin1(objectName));
    button->setAutoDefault(false);
    return button;
}

}  // namespace vantorel::ui

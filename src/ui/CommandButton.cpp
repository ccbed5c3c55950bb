#include "ui/CommandButton.h"

#include <QPushButton>

namespace vantorel::ui {

QAbstractButton* makeCommandButton(QWidget* parent, const char* objectName, const QString& caption, bool isDefault) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(QString::fromLatin1(objectName));
    button->setDefault(isDefault);
    return button;
}

}  // namespace vantorel::ui

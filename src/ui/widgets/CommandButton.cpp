#include "ui/widgets/CommandButton.h"

#include "ui/widgets/lvButtons_H.h"

namespace vantorel::ui {

QAbstractButton* makeCommandButton(const char* objectName, const QString& caption, QWidget* parent, bool isDefault) {
    lvButtons_H* button = lvButtons_H::create(parent, QString::fromLatin1(objectName), caption);
    button->setDefault(isDefault);
    return button;
}

}  // namespace vantorel::ui

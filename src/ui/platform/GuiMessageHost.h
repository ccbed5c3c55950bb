#pragma once
// Messages and questions as the desktop's message boxes, owned by a window.

#include <QPointer>
#include <QWidget>

#include "core/MessageHost.h"

namespace vantorel::ui {

class GuiMessageHost : public MessageHost {
public:
    explicit GuiMessageHost(QWidget* owner = nullptr) : owner_(owner) {}
    void setOwner(QWidget* owner) { owner_ = owner; }
    // The owner is gone for good: nothing more is shown, and every question
    // is answered No.
    void silence() { silenced_ = true; }
    void showMessage(const Message& message) override;
    bool askYesNo(const Message& question) override;

private:
    QPointer<QWidget> owner_;
    bool silenced_ = false;
};

}  // namespace vantorel::ui

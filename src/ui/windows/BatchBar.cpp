#include "ui/windows/BatchBar.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QLabel>

#include "library/BatchQueue.h"
#include "ui/widgets/CommandButton.h"

namespace vantorel::ui {

BatchBar::BatchBar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("BatchBar"));
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    label_ = new QLabel(QString::fromStdString(batchLabel({})), this);
    label_->setObjectName(QStringLiteral("BatchLbl"));
    QFont strong = label_->font();
    strong.setBold(true);
    label_->setFont(strong);
    label_->setTextFormat(Qt::PlainText);
    label_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    cancel_ = makeCommandButton("BatchCancelBtn", QStringLiteral("Cancel &Queue"), this);
    cancel_->setToolTip(QStringLiteral("Leave batch mode: runs use the find and replace boxes again"));
    connect(cancel_, &QAbstractButton::clicked, this, &BatchBar::cancelRequested);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 2, 4, 2);
    row->addWidget(label_, 1);
    row->addWidget(cancel_);
    showBar(false);
}

bool BatchBar::queued() const { return !label_->isHidden(); }

void BatchBar::showQueue(BatchQueue queue) {
    queue_ = std::move(queue);
    const QString label = QString::fromStdString(queue_.label);
    label_->setText(label);
    label_->setToolTip(label);
    showBar(true);
}

void BatchBar::clear() { showBar(false); }

void BatchBar::showBar(bool on) {
    for (QWidget* shown : std::initializer_list<QWidget*>{cancel_, label_, this}) shown->setVisible(on);
}

}  // namespace vantorel::ui

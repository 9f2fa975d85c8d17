#include "ui/overlay/close_label.h"

#include "ui/parts/plain_label.h"

#include <QEvent>
#include <QLabel>

namespace tally::ui {
namespace {

class ClosingPress : public QObject {
public:
    explicit ClosingPress(QLabel *label) : QObject(label), label_(label) {}

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::MouseButtonPress)
            return QObject::eventFilter(watched, event);
        label_->window()->close();
        return true;
    }

private:
    QLabel *label_;
};

} // namespace

QLabel *new_close_label(const QString &style)
{
    QLabel *label = plain_label(QStringLiteral("✕"), style);
    label->setCursor(Qt::PointingHandCursor);
    label->setAccessibleName(QStringLiteral("Close overlay"));
    label->installEventFilter(new ClosingPress(label));
    return label;
}

} // namespace tally::ui

#include "ui/parts/quiet_modal.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>

namespace tally::ui {
namespace {

/// Makes a dialog modal when the window below it gets the keyboard.
class LateModality : public QObject {
public:
    LateModality(QDialog &dialog, Qt::WindowModality modality)
        : QObject(&dialog), dialog_(dialog), modality_(modality)
    {
        dialog.parentWidget()->window()->installEventFilter(this);
    }

    bool eventFilter(QObject *window, QEvent *event) override
    {
        if (event->type() == QEvent::WindowActivate) {
            window->removeEventFilter(this);
            QMetaObject::invokeMethod(
                this, [this] { take_hold(); }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    void take_hold()
    {
        deleteLater();
        if (!dialog_.isVisible())
            return;
        const QPoint place = dialog_.pos();
        dialog_.hide();
        dialog_.setAttribute(Qt::WA_ShowWithoutActivating, false);
        dialog_.setWindowModality(modality_);
        dialog_.move(place); // else some window managers add the frame to it
        dialog_.show();
    }

    QDialog &dialog_;
    Qt::WindowModality modality_;
};

} // namespace

void open_quietly(QDialog &dialog, Qt::WindowModality modality)
{
    // On X11 a modal window takes the keyboard whatever its attributes say.
    const bool is_quiet = !QApplication::activeWindow() && dialog.parentWidget();
    dialog.setAttribute(Qt::WA_ShowWithoutActivating, is_quiet);
    dialog.setWindowModality(is_quiet ? Qt::NonModal : modality);
    if (is_quiet)
        new LateModality(dialog, modality);
    dialog.show();
}

} // namespace tally::ui

#include "ui/parts/quiet_modal.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

namespace tally::ui {
namespace {

/// Makes a window modal when the one below it gets the keyboard.
class LateModality : public QObject {
public:
    LateModality(QWidget &window, Qt::WindowModality modality)
        : QObject(&window), window_(window), modality_(modality)
    {
        window.parentWidget()->window()->installEventFilter(this);
    }

    bool eventFilter(QObject *below, QEvent *event) override
    {
        if (event->type() == QEvent::WindowActivate) {
            below->removeEventFilter(this);
            QMetaObject::invokeMethod(
                this, [this] { take_hold(); }, Qt::QueuedConnection);
        }
        return false;
    }

private:
    void take_hold()
    {
        deleteLater();
        if (!window_.isVisible())
            return;
        const QPoint place = window_.pos();
        window_.hide();
        window_.setAttribute(Qt::WA_ShowWithoutActivating, false);
        window_.setWindowModality(modality_);
        window_.move(place); // else some window managers add the frame to it
        window_.show();
    }

    QWidget &window_;
    Qt::WindowModality modality_;
};

} // namespace

void open_quietly(QWidget &window)
{
    const Qt::WindowModality modality =
        window.isModal() ? window.windowModality() : Qt::WindowModal;
    // On X11 a modal window takes the keyboard whatever its attributes say.
    const bool is_quiet = !has_keyboard() && window.parentWidget();
    window.setAttribute(Qt::WA_ShowWithoutActivating, is_quiet);
    window.setWindowModality(is_quiet ? Qt::NonModal : modality);
    if (is_quiet)
        new LateModality(window, modality);
    window.show();
}

bool has_keyboard()
{
    return QApplication::activeWindow();
}

void open_late(QWidget &window, bool had_keyboard)
{
    if (had_keyboard)
        open_quietly(window);
    else
        window.show();
}

} // namespace tally::ui

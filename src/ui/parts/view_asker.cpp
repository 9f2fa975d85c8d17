#include "ui/parts/view_asker.h"

#include <QEvent>
#include <QWidget>

namespace tally::ui {

using queries::Sight;

ViewAsker::ViewAsker(queries::StoreQueries &queries, QWidget *view)
    : Asker(queries,
            view->isVisible() && !view->window()->isMinimized() ? Sight::Seen : Sight::Hidden)
{
    view->installEventFilter(this);
}

bool ViewAsker::eventFilter(QObject *view, QEvent *event)
{
    if (event->type() == QEvent::Show)
        set_sight(Sight::Seen);
    else if (event->type() == QEvent::Hide)
        set_sight(Sight::Hidden);
    return Asker::eventFilter(view, event);
}

} // namespace tally::ui

#include "ui/parts/sheet_property.h"

#include <QStyle>
#include <QVariant>
#include <QWidget>

namespace tally::ui {

bool set_sheet_property(QWidget &widget, const char *name, bool value)
{
    if (widget.property(name).toBool() == value)
        return false;
    widget.setProperty(name, value);
    widget.style()->unpolish(&widget); // the sheet looks at properties only then
    widget.style()->polish(&widget);
    return true;
}

} // namespace tally::ui

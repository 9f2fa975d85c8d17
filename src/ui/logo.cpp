#include "ui/logo.h"

// What the macro names lies outside of all namespaces.
static void load_resources()
{
    Q_INIT_RESOURCE(tallyhand);
}

namespace tally::ui {

QIcon logo()
{
    load_resources();
    QIcon icon(QStringLiteral(":/icons/logo-256.png"));
    icon.addFile(QStringLiteral(":/icons/logo-64.png"));
    return icon;
}

} // namespace tally::ui

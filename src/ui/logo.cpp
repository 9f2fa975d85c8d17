#include "logo.h"

namespace {

void load_resources() // the macro wants to stand outside of named namespaces
{
    Q_INIT_RESOURCE(tallyhand);
}

} // namespace

namespace tally::ui {

QIcon logo()
{
    load_resources();
    QIcon icon(QStringLiteral(":/icons/logo-256.png"));
    icon.addFile(QStringLiteral(":/icons/logo-64.png"));
    return icon;
}

} // namespace tally::ui

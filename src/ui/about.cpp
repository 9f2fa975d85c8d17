#include "ui/about.h"

#include "platform/identity.h"

#include <QMessageBox>

namespace tally::ui {

QString copyright_line()
{
    return QStringLiteral("© 2026 %1").arg(platform::organisation_name);
}

void show_about_box(QWidget *parent, const QString &product_page)
{
    QMessageBox::about(parent, QStringLiteral("About"),
                       QStringLiteral("<b>%1</b><br>%2<br><br>%3<br><a href=\"%4\">%4</a>")
                           .arg(platform::application_name, platform::application_version,
                                copyright_line(), product_page.toHtmlEscaped()));
}

} // namespace tally::ui

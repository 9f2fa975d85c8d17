#include "ui/alerts/tray_manager.h"

#include "platform/identity.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QSystemTrayIcon>

namespace tally::ui {
namespace {

QIcon tray_picture(const QString &icon_dir)
{
    const QDir dir(icon_dir);
    for (const QString &path :
         {dir.filePath(QStringLiteral("logo-64.png")), dir.filePath(QStringLiteral("logo.png")),
          QStringLiteral(":/icons/logo-64.png"), QStringLiteral(":/icons/logo.png")}) {
        if (QFileInfo::exists(path))
            return QIcon(path);
    }
    return {};
}

} // namespace

TrayManager::TrayManager(const QString &icon_dir, QObject *parent) : QObject(parent)
{
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return;
    tray_icon_ = new QSystemTrayIcon(tray_picture(icon_dir), this);
    tray_icon_->setToolTip(QStringLiteral("LEDGERLINE - TALLYHAND"));
    menu_ = std::make_unique<QMenu>();
    menu_->addAction(QStringLiteral("Show window"), this, &TrayManager::showRequested);
    menu_->addAction(QStringLiteral("Toggle overlay"), this, &TrayManager::overlayToggle);
    menu_->addSeparator();
    menu_->addAction(QStringLiteral("Exit"), this, &TrayManager::exitRequested);
    tray_icon_->setContextMenu(menu_.get());
    connect(tray_icon_, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::DoubleClick)
                    Q_EMIT showRequested();
            });
    tray_icon_->show();
}

TrayManager::~TrayManager() = default;

void TrayManager::hide_tray()
{
    if (tray_icon_)
        tray_icon_->hide();
}

void TrayManager::tell(const QString &text)
{
    if (tray_icon_)
        tray_icon_->showMessage(platform::application_name, text, tray_icon_->icon());
}

} // namespace tally::ui

#pragma once

#include <QObject>

#include <memory>

class QMenu;
class QSystemTrayIcon;

namespace tally::ui {

/// The program's icon in the system tray, if the system has one.
class TrayManager : public QObject {
    Q_OBJECT

public:
    /// \param icon_dir where to look for "logo-64.png" and "logo.png" before the built-in ones
    explicit TrayManager(const QString &icon_dir, QObject *parent = nullptr);
    ~TrayManager() override;

    bool has_tray() const { return tray_icon_ != nullptr; }
    void hide_tray();
    /// A balloon at the icon.
    void tell(const QString &text);

Q_SIGNALS:
    void showRequested();
    void overlayToggle();
    void exitRequested();

private:
    QSystemTrayIcon *tray_icon_ = nullptr;
    std::unique_ptr<QMenu> menu_; ///< the icon shows it but does not own it
};

} // namespace tally::ui

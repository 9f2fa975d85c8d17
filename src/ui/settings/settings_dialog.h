#pragma once

#include <QDialog>

class QCheckBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace tally {
class Settings;
}
namespace tally::services {
class KeepCooldownService;
}

namespace tally::ui {

class FolderProbe;

/// The settings that have no menu entry: the folder of the game's mails, and the warnings of the
/// barbarian keep.
class SettingsDialog : public QDialog {
    Q_OBJECT

public:
    /// \param settings outlives the dialog, as does the service
    /// \param service null: there are no settings of the keep
    SettingsDialog(Settings *settings, services::KeepCooldownService *service,
                   QWidget *parent = nullptr);

private Q_SLOTS:
    void browse_mailcache();
    void on_ok();
    void on_test_tray();
    void on_test_overlay();

private:
    QFormLayout *new_folder_form();
    QGroupBox *new_keep_group();
    void look_for_folder();
    void show_folder_note(bool is_there);

    Settings *settings_;
    services::KeepCooldownService *service_;
    FolderProbe *folder_probe_;
    QLineEdit *mailcache_edit_ = nullptr;
    QLabel *mailcache_note_ = nullptr;
    QSpinBox *cooldown_spin_ = nullptr;
    QLineEdit *notify_before_edit_ = nullptr;
    QCheckBox *notify_check_ = nullptr;
};

} // namespace tally::ui

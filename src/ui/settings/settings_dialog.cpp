#include "ui/settings/settings_dialog.h"

#include "platform/paths/data_folders.h"
#include "services/keep_cooldown_service.h"
#include "settings/catalogue.h"
#include "settings/settings.h"
#include "ui/parts/message_box.h"
#include "ui/parts/plain_label.h"
#include "ui/settings/folder_probe.h"
#include "ui/settings/settings_notes.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace tally::ui {
namespace {

const QString quiet = QStringLiteral("color: #888; font-size: 9pt;");
const QString wrong = QStringLiteral("color: #e74c3c; font-size: 9pt;");
const QString wrong_edge = QStringLiteral("QLineEdit { border: 1px solid #e74c3c; }");

void set_style(QWidget &widget, const QString &style)
{
    if (widget.styleSheet() != style)
        widget.setStyleSheet(style);
}

/// Wraps what it says; a word too long for it is cut off rather than widening the dialog.
QLabel *new_note(const QString &text = {}, const QString &style = {})
{
    QLabel *note = plain_label(text, style);
    note->setWordWrap(true);
    note->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Maximum);
    return note;
}

QWidget *in_a_row(std::initializer_list<QWidget *> widgets)
{
    auto *holder = new QWidget;
    auto *row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    for (QWidget *widget : widgets)
        row->addWidget(widget);
    return holder;
}

} // namespace

SettingsDialog::SettingsDialog(Settings *settings, services::KeepCooldownService *service,
                               QWidget *parent)
    : QDialog(parent), settings_(settings), service_(service), folder_probe_(new FolderProbe(this))
{
    setWindowTitle(QStringLiteral("Settings"));
    setModal(true);
    resize(720, service_ ? 540 : 320);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(12);
    layout->addLayout(new_folder_form());
    if (service_)
        layout->addWidget(new_keep_group());
    else
        layout->addStretch();
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &SettingsDialog::on_ok);
    connect(buttons, &QDialogButtonBox::rejected, this, &SettingsDialog::reject);
    layout->addWidget(buttons);
    connect(folder_probe_, &FolderProbe::looked, this, &SettingsDialog::show_folder_note);
    look_for_folder();
}

QFormLayout *SettingsDialog::new_folder_form()
{
    const QString default_dir = platform::default_mailcache_dir();
    mailcache_edit_ = new QLineEdit(settings_->get_or(settings::mailcache_dir, default_dir));
    mailcache_edit_->setPlaceholderText(default_dir);
    mailcache_edit_->setAccessibleName(QStringLiteral("Game mailcache folder"));
    connect(mailcache_edit_, &QLineEdit::textChanged, this, &SettingsDialog::look_for_folder);
    mailcache_note_ = new_note();
    auto *browse = new QPushButton(QStringLiteral("Browse..."));
    connect(browse, &QPushButton::clicked, this, &SettingsDialog::browse_mailcache);
    auto *help = new QLabel(folder_help(platform::mailcache_candidates()));
    help->setTextFormat(Qt::RichText);
    help->setWordWrap(true);
    help->setAlignment(Qt::AlignTop);

    auto *form = new QFormLayout;
    form->setSpacing(10);
    form->addRow(QStringLiteral("Game mailcache folder:"), in_a_row({mailcache_edit_, browse}));
    form->addRow(QString(), mailcache_note_);
    form->addRow(QString(), help);
    return form;
}

QGroupBox *SettingsDialog::new_keep_group()
{
    cooldown_spin_ = new QSpinBox;
    cooldown_spin_->setRange(1, 240);
    cooldown_spin_->setSuffix(QStringLiteral(" h"));
    cooldown_spin_->setValue(settings_->get(settings::keep_cooldown_hours));
    notify_before_edit_ = new QLineEdit(settings_->get(settings::keep_notify_before_hours));
    notify_before_edit_->setPlaceholderText(QStringLiteral("e.g. 5,3,1"));
    QLabel *understood = new_note(hours_note(notify_before_edit_->text()), quiet);
    understood->setObjectName(QStringLiteral("hoursNote"));
    connect(notify_before_edit_, &QLineEdit::textChanged, understood,
            [understood](const QString &text) { understood->setText(hours_note(text)); });
    notify_check_ = new QCheckBox(QStringLiteral("Enable tray notifications + overlay"));
    notify_check_->setChecked(settings_->get(settings::keep_notify_enabled));
    auto *test_tray = new QPushButton(QStringLiteral("🔔 Test tray notification"));
    connect(test_tray, &QPushButton::clicked, this, &SettingsDialog::on_test_tray);
    auto *test_overlay = new QPushButton(QStringLiteral("🏰 Test overlay"));
    connect(test_overlay, &QPushButton::clicked, this, &SettingsDialog::on_test_overlay);
    auto *tests = in_a_row({test_tray, test_overlay});
    qobject_cast<QHBoxLayout *>(tests->layout())->addStretch();

    auto *group = new QGroupBox(QStringLiteral("Barbarian Keep"));
    auto *form = new QFormLayout(group);
    form->setSpacing(8);
    form->addRow(QStringLiteral("Cooldown:"), cooldown_spin_);
    form->addRow(QStringLiteral("Pre-notify (hours before, CSV):"), notify_before_edit_);
    form->addRow(QString(), understood);
    form->addRow(QString(), notify_check_);
    form->addRow(QString(), tests);
    return group;
}

void SettingsDialog::look_for_folder()
{
    folder_probe_->look(mailcache_edit_->text().trimmed());
}

void SettingsDialog::show_folder_note(bool is_there)
{
    const FolderNote note =
        folder_note(mailcache_edit_->text(), settings_->get(settings::mailcache_dir), is_there);
    mailcache_note_->setText(note.text);
    mailcache_note_->setVisible(!note.text.isEmpty());
    mailcache_edit_->setAccessibleDescription(note.text);
    set_style(*mailcache_note_, note.is_wrong ? wrong : quiet);
    set_style(*mailcache_edit_, note.is_wrong ? wrong_edge : QString());
}

void SettingsDialog::browse_mailcache()
{
    const QString folder = QFileDialog::getExistingDirectory(
        this, QStringLiteral("Select mailcache folder"),
        browse_start(mailcache_edit_->text(), platform::default_mailcache_dir()),
        QFileDialog::ShowDirsOnly);
    if (!folder.isEmpty())
        mailcache_edit_->setText(folder);
}

void SettingsDialog::on_ok()
{
    if (const QString folder = mailcache_edit_->text().trimmed(); !folder.isEmpty())
        settings_->set(settings::mailcache_dir, folder);
    if (service_) {
        settings_->set(settings::keep_cooldown_hours, cooldown_spin_->value());
        settings_->set(settings::keep_notify_before_hours, notify_before_edit_->text().trimmed());
        settings_->set(settings::keep_notify_enabled, notify_check_->isChecked());
        service_->reload_settings();
        service_->tick();
    }
    accept();
}

void SettingsDialog::on_test_tray()
{
    const QString title = QStringLiteral("Test tray");
    if (!service_)
        return show_box(QMessageBox::Warning, title,
                        QStringLiteral("KeepCooldownService not wired — internal bug."), this);
    if (services::KeepCooldownService::show_test_notification())
        return show_box(
            QMessageBox::Information, title,
            QStringLiteral("Tray balloon sent — look at the system-tray area OR Windows "
                           "Notification Center (Win+N).\n\nIf you don't see anything:\n  • "
                           "Windows 10/11 may be muting app balloons — enable notifications in "
                           "Settings → System → Notifications → find \"Ledgerline - "
                           "Tallyhand\".\n  • Focus Assist / Do Not Disturb may be on."),
            this);
    show_box(QMessageBox::Warning, title,
             QStringLiteral("Tray notifications are unavailable on this system.\n\nPossible "
                            "reasons:\n  • System tray icons hidden (Settings → Personalization → "
                            "Taskbar → Notification-area icons).\n  • "
                            "QSystemTrayIcon::supportsMessages() returned false — some minimal "
                            "shells don't implement balloons."),
             this);
}

void SettingsDialog::on_test_overlay()
{
    if (service_)
        Q_EMIT service_->keepReady();
}

} // namespace tally::ui

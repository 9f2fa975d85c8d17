#include "services/keep_cooldown_service.h"

#include "data/store/tally_db.h"
#include "platform/log/error_stream.h"
#include "services/notify_hours.h"
#include "settings/catalogue.h"
#include "settings/settings.h"

#include <QLoggingCategory>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <exception>
#include <utility>

namespace tally::services {
namespace {

Q_LOGGING_CATEGORY(log_services, "tally.services")

constexpr double seconds_per_hour = 3600.0;

KeepCooldownService::Notice &installed_notice()
{
    static KeepCooldownService::Notice notice;
    return notice;
}

bool show_notice(const QString &title, const QString &text)
{
    if (!installed_notice())
        return false;
    installed_notice()(title, text);
    return true;
}

/// The name of a kill in the settings.
QString name_of_kill(double kill)
{
    return QString::number(kill, 'f', 3);
}

QSet<int> hours_in(const QString &text)
{
    QSet<int> hours;
    for (const QString &part : text.split(u',', Qt::SkipEmptyParts)) {
        bool is_number = false;
        const int number = part.trimmed().toInt(&is_number);
        if (is_number)
            hours.insert(number);
    }
    return hours;
}

QString text_of(const QSet<int> &hours)
{
    QStringList numbers;
    for (const int number : hours)
        numbers << QString::number(number);
    numbers.sort();
    return numbers.join(u',');
}

} // namespace

KeepCooldownService::KeepCooldownService(data::TallyDb *db, Settings *settings,
                                         ui::TrayManager *tray, QObject *parent,
                                         platform::Clock clock)
    : QObject(parent), db_(db), settings_(settings), tray_(tray), clock_(std::move(clock)),
      tick_timer_(new QTimer(this))
{
    tick_timer_->setInterval(60'000);
    connect(tick_timer_, &QTimer::timeout, this, &KeepCooldownService::tick);
    reload_settings();
    QTimer::singleShot(0, this, &KeepCooldownService::tick);
    tick_timer_->start();
}

void KeepCooldownService::install_notice(Notice notice)
{
    installed_notice() = std::move(notice);
}

bool KeepCooldownService::show_test_notification()
{
    return show_notice(QStringLiteral("🏰 Barbarian Keep — TEST"),
                       QStringLiteral("This is a test notification. Real pre-alerts fire when the "
                                      "cooldown is close to expiring — click to dismiss."));
}

void KeepCooldownService::reload_settings()
{
    cooldown_hours_ = settings_->get(settings::keep_cooldown_hours);
    notify_hours_ = parse_notify_hours(settings_->get(settings::keep_notify_before_hours)).hours;
    notify_enabled_ = settings_->get(settings::keep_notify_enabled);
}

void KeepCooldownService::tick()
{
    if (kill_query_)
        return kill_query_([this](std::optional<double> kill) { try_to_work_out(kill); },
                           [this](const QString &failure) { note_failure(failure); });
    try {
        try_to_work_out(last_kill(*db_));
    } catch (const std::exception &failure) {
        note_failure(platform::text_of(failure));
    }
}

void KeepCooldownService::try_to_work_out(std::optional<double> kill)
{
    try {
        work_out(kill);
        has_failed_ = false;
    } catch (const std::exception &failure) {
        note_failure(platform::text_of(failure));
    }
}

void KeepCooldownService::note_failure(const QString &failure)
{
    if (!std::exchange(has_failed_, true))
        qCWarning(log_services) << "the keep's cooldown is not known:" << failure;
}

std::optional<double> KeepCooldownService::last_kill(const data::TallyDb &db)
{
    const std::optional<double> player = db.keep_player();
    return player ? db.last_keep_kill(*player) : std::nullopt;
}

double KeepCooldownService::whole_seconds_now() const
{
    return std::floor(clock_());
}

void KeepCooldownService::on_tick()
{
    work_out(last_kill(*db_));
}

void KeepCooldownService::work_out(std::optional<double> kill)
{
    if (!kill) {
        Q_EMIT countdownTick(0.0, false);
        return;
    }
    const double ready_at = *kill + cooldown_hours_ * seconds_per_hour;
    const double remaining = ready_at - whole_seconds_now();
    const bool is_ready = remaining <= 0.0;
    Q_EMIT countdownTick(std::max(remaining, 0.0), is_ready);

    const double now = whole_seconds_now();
    if (last_seen_kill_ != kill)
        take_up_kill(*kill);
    if (!notify_enabled_)
        return;
    warn_in_advance(ready_at, now);
    if (is_ready && !ready_handled_)
        announce_ready(*kill);
}

// The acknowledgements go past `Settings`, which would take a store that fails for one that holds
// nothing, and say everything again.

void KeepCooldownService::take_up_kill(double kill)
{
    const QString last_ts = QLatin1StringView(settings::keep_notify_ack_last_ts.key);
    const QString name = name_of_kill(kill);
    if (db_->setting_or(last_ts, {}) != name) {
        // First what may be lost: hours noted under a kill that is not theirs would stay unsaid.
        db_->set_setting(QLatin1StringView(settings::keep_notify_ack_sent.key), QString());
        db_->set_setting(last_ts, name);
    }
    last_seen_kill_ = kill;
    ready_handled_ = false;
    warned_.clear();
}

void KeepCooldownService::warn_in_advance(double ready_at, double now)
{
    const QString key = QLatin1StringView(settings::keep_notify_ack_sent.key);
    const QSet<int> noted = hours_in(db_->setting_or(key, {}));
    warned_ |= noted;
    for (const int hours : std::as_const(notify_hours_)) {
        const bool is_due = now >= ready_at - hours * seconds_per_hour && ready_at > now;
        if (hours <= 0 || !is_due || warned_.contains(hours))
            continue;
        warned_.insert(hours);
        show_notice(QStringLiteral("🏰 Barbarian Keep"),
                    QStringLiteral("Keep ready in ~%1 hour%2 — click to dismiss")
                        .arg(hours)
                        .arg(hours == 1 ? QString() : QStringLiteral("s")));
    }
    if (warned_ != noted)
        db_->set_setting(key, text_of(warned_));
}

void KeepCooldownService::announce_ready(double kill)
{
    const QString key = QLatin1StringView(settings::keep_ready_overlay_ack_ts.key);
    const QString name = name_of_kill(kill);
    if (db_->setting_or(key, {}) != name) {
        db_->set_setting(key, name);
        Q_EMIT keepReady();
    }
    ready_handled_ = true;
}

} // namespace tally::services

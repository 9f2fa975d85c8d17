#pragma once

#include "platform/clock/clock.h"

#include <QList>
#include <QObject>
#include <QSet>

#include <functional>
#include <optional>
#include <utility>

class QTimer;

namespace tally {
class Settings;
}
namespace tally::data {
class TallyDb;
}
namespace tally::ui {
class TrayManager;
}

namespace tally::services {

/// Works out from the stored kills when the barbarian keep can be attacked again, and warns of it
/// in advance and when it is ready. Each warning comes once for each kill, whatever happens to the
/// program in between: what was said is noted in the settings. For the GUI thread.
class KeepCooldownService : public QObject {
    Q_OBJECT

public:
    /// Shows a small notice that does not disturb the game.
    using Notice = std::function<void(const QString &title, const QString &text)>;

    /// \param db outlives the service, as do \p settings
    /// \param tray may be null
    KeepCooldownService(data::TallyDb *db, Settings *settings, ui::TrayManager *tray,
                        QObject *parent, platform::Clock clock = platform::system_time);

    /// To be called once by whoever owns the screen; until then notices are lost.
    static void install_notice(Notice notice);
    /// \return whether there is anything to show it with
    static bool show_test_notification();

    /// Hands the time of the last kill to `found`, or what went wrong to `failed`, sooner or later
    /// on the GUI thread.
    using KillQuery = std::function<void(std::function<void(std::optional<double>)> found,
                                         std::function<void(const QString &)> failed)>;
    /// Lets `tick` ask another thread: over years of play the answer takes long.
    void set_kill_query(KillQuery query) { kill_query_ = std::move(query); }
    /// What that thread runs. \throws std::runtime_error of the store
    static std::optional<double> last_kill(const data::TallyDb &db);

    void reload_settings();
    void set_tray(ui::TrayManager *tray) { tray_ = tray; }

    /// As `on_tick`, for those who cannot do anything about a failure: it is logged, once until a
    /// tick succeeds again.
    void tick();

public Q_SLOTS:
    /// Works everything out anew. \throws std::runtime_error of the store
    void on_tick();

Q_SIGNALS:
    /// At every tick; 0 and not ready while no kill is known.
    void countdownTick(double secondsRemaining, bool isReady);
    void keepReady();

private:
    void work_out(std::optional<double> kill);
    void try_to_work_out(std::optional<double> kill);
    void note_failure(const QString &failure);
    double whole_seconds_now() const;
    void take_up_kill(double kill);
    void warn_in_advance(double ready_at, double now);
    void announce_ready(double kill);

    data::TallyDb *db_;
    Settings *settings_;
    ui::TrayManager *tray_;
    platform::Clock clock_;
    KillQuery kill_query_;
    QTimer *tick_timer_;
    int cooldown_hours_ = 68;
    QList<int> notify_hours_ = {5, 3, 1};
    bool notify_enabled_ = true;
    std::optional<double> last_seen_kill_; ///< whose acknowledgements the settings hold
    bool ready_handled_ = false;           ///< for that kill, in this run
    QSet<int> warned_;                     ///< for that kill, in this run
    bool has_failed_ = false;              ///< the last `tick`
};

} // namespace tally::services

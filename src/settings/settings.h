#pragma once

#include "settings/setting.h"

#include <QObject>

#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

namespace tally {

namespace data {
class TallyDb;
}

/// The table of settings below `Settings`, by key. Both may throw `std::exception`s.
struct SettingTexts {
    std::function<std::optional<QString>(const QString &key)> read;
    std::function<void(const QString &key, const QString &text)> write;
};

/// Reads and writes the settings of the catalogue, and tells of changes. For the GUI thread.
///
/// A store that fails costs the setting and a line in the log, and nothing more: reading gives the
/// default, and whoever listens still hears of what was set.
class Settings : public QObject {
    Q_OBJECT

public:
    explicit Settings(SettingTexts texts);
    /// \param db outlives the settings
    explicit Settings(data::TallyDb &db);

    /// The stored value, or the default where there is none that can be accepted.
    template <typename T>
    T get(const Setting<T> &setting) const
    {
        const std::optional<QString> text = read(QLatin1StringView(setting.key));
        return text ? setting.from_text(*text) : setting.default_value();
    }

    /// The same with a default that is known only when the program runs.
    QString get_or(const Setting<QString> &setting, const QString &fallback) const;

    /// Whether the store says that it holds nothing for the setting. A store that fails does not.
    template <typename T>
    bool is_absent(const Setting<T> &setting) const
    {
        return has_no_row(QLatin1StringView(setting.key));
    }

    /// Stores the value, unless it stands there already, and tells.
    template <typename T>
    void set(const Setting<T> &setting, const std::type_identity_t<T> &value)
    {
        write(QLatin1StringView(setting.key), setting.to_text(value));
    }

    /// Calls `handler` with each new value of the setting as long as `context` lives.
    template <typename T, typename Handler>
    void on_change(const Setting<T> &setting, const QObject *context, Handler handler) const
    {
        connect(this, &Settings::changed, context,
                [setting, handler = std::move(handler)](const QString &key, const QString &text) {
                    if (key == QLatin1StringView(setting.key))
                        handler(setting.from_text(text));
                });
    }

Q_SIGNALS:
    void changed(const QString &key, const QString &text);

private:
    std::optional<QString> read(const QString &key) const;
    bool has_no_row(const QString &key) const;
    void write(const QString &key, const QString &text);

    SettingTexts texts_;
};

} // namespace tally

#include "settings/settings.h"

#include "data/store/tally_db.h"

#include <QLoggingCategory>
#include <QThread>

#include <exception>

namespace tally {

Q_LOGGING_CATEGORY(log_settings, "tally.settings")

int Setting<int>::from_text(const QString &text) const
{
    bool is_number = false;
    const int number = text.toInt(&is_number);
    return is_number && number >= lowest && number <= highest ? number : fallback;
}

bool Setting<bool>::from_text(const QString &text) const
{
    if (text == u"1")
        return true;
    return text != u"0" && otherwise;
}

QString Setting<QString>::from_text(const QString &text) const
{
    return text.size() <= longest ? text : default_value();
}

Settings::Settings(SettingTexts texts) : texts_(std::move(texts)) {}

Settings::Settings(data::TallyDb &db)
    : Settings(SettingTexts{[&db](const QString &key) { return db.get_setting(key); },
                            [&db](const QString &key, const QString &text) {
                                db.set_setting(key, text);
                            }})
{}

QString Settings::get_or(const Setting<QString> &setting, const QString &fallback) const
{
    const std::optional<QString> text = read(QLatin1StringView(setting.key));
    return text ? setting.from_text(*text) : fallback;
}

std::optional<QString> Settings::read(const QString &key) const
{
    Q_ASSERT(QThread::currentThread() == thread());
    try {
        return texts_.read(key);
    } catch (const std::exception &failure) {
        qCWarning(log_settings) << "cannot read" << key << failure.what();
        return std::nullopt;
    }
}

bool Settings::has_no_row(const QString &key) const
{
    try {
        return !texts_.read(key);
    } catch (const std::exception &failure) {
        qCWarning(log_settings) << "cannot read" << key << failure.what();
        return false;
    }
}

void Settings::write(const QString &key, const QString &text)
{
    Q_ASSERT(QThread::currentThread() == thread());
    try {
        if (texts_.read(key) == text)
            return;
        texts_.write(key, text);
    } catch (const std::exception &failure) {
        qCWarning(log_settings) << "cannot store" << key << failure.what();
    }
    Q_EMIT changed(key, text);
}

} // namespace tally

#include "ui/stored_settings.h"

#include "data/store/tally_db.h"
#include "ui/parts/ui_log.h"

#include <exception>

namespace tally::ui {
namespace {

QString flag_text(bool value)
{
    return value ? QStringLiteral("1") : QStringLiteral("0");
}

} // namespace

QString stored_setting(const data::TallyDb &db, const QString &key, const QString &fallback)
{
    try {
        return db.setting_or(key, fallback);
    } catch (const std::exception &failure) {
        qCWarning(log_ui) << "cannot read setting" << key << failure.what();
        return fallback;
    }
}

bool stored_flag(const data::TallyDb &db, const QString &key, bool fallback)
{
    return stored_setting(db, key, flag_text(fallback)) == u"1";
}

void store_setting(data::TallyDb &db, const QString &key, const QString &value)
{
    try {
        db.set_setting(key, value);
    } catch (const std::exception &failure) {
        qCWarning(log_ui) << "cannot store setting" << key << failure.what();
    }
}

void store_flag(data::TallyDb &db, const QString &key, bool value)
{
    store_setting(db, key, flag_text(value));
}

} // namespace tally::ui

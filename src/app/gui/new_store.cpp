#include "app/gui/new_store.h"

#include "data/store/tally_db.h"
#include "platform/log/process_log.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <exception>

namespace tally::app {

std::optional<SettingsTable> settings_of_lost_store(const data::TallyDb &db)
{
    if (db.is_in_place())
        return std::nullopt;
    try {
        return db.all_settings();
    } catch (const std::exception &) {
        return std::nullopt; // logged by the store
    }
}

void make_new_store(const QString &path, const SettingsTable &settings)
{
    if (QFileInfo::exists(path))
        return;
    // What was not yet written to the lost file is of no use without it.
    for (const char *suffix : {"-wal", "-shm"})
        QFile::remove(path + QLatin1StringView(suffix));
    try {
        data::TallyDb db(path);
        db.init_schema();
        for (auto setting = settings.begin(); setting != settings.end(); ++setting)
            db.set_setting(setting.key(), setting.value());
        platform::ProcessLog::line(
            QStringLiteral("[main] the store was removed — made a new one with its settings"));
    } catch (const std::exception &) {
        // Logged by the store.
    }
}

void restart_program()
{
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (!QProcess::startDetached(QCoreApplication::applicationFilePath(), arguments))
        platform::ProcessLog::line(QStringLiteral("[main] the program cannot be started again"));
}

} // namespace tally::app

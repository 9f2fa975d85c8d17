#include "platform/log/process_log.h"

#include "platform/identity.h"
#include "platform/log/error_stream.h"
#include "platform/paths/data_folders.h"

#include <QDateTime>
#include <QDir>
#include <QSysInfo>

#include <mutex>

namespace tally::platform {
namespace {

// Guards the pointer and all that the log writes to.
std::mutex mutex;
ProcessLog *living = nullptr;
// Writing to the file can make Qt log in turn.
thread_local bool is_writing = false;

QLatin1StringView level_of(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QLatin1StringView("debug");
    case QtInfoMsg:
        return QLatin1StringView("info");
    case QtWarningMsg:
        return QLatin1StringView("warning");
    case QtCriticalMsg:
        return QLatin1StringView("critical");
    case QtFatalMsg:
        break;
    }
    return QLatin1StringView("fatal");
}

/// The time, then the text, whose further lines are set in so that none looks like an entry.
QString dated(QString text)
{
    const QDateTime now = QDateTime::currentDateTime();
    return now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODateWithMs) + u' ' +
           text.replace(u'\n', QStringLiteral("\n    "));
}

} // namespace

ProcessLog::ProcessLog(const ProcessLogOptions &options)
    : file_({options.path, options.rotate_at, options.kept,
             dated(QStringLiteral("info process: ") + options.run_line)}),
      echo_(options.echo)
{
    const std::scoped_lock lock(mutex);
    living = this;
    former_handler_ = qInstallMessageHandler(on_message);
}

ProcessLog::~ProcessLog()
{
    const std::scoped_lock lock(mutex);
    qInstallMessageHandler(former_handler_);
    living = nullptr;
}

void ProcessLog::line(const QString &text)
{
    write(text, QStringLiteral("info process: ") + text);
}

void ProcessLog::on_message(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    write(
        qFormatLogMessage(type, context, text),
        QStringLiteral("%1 %2: %3").arg(level_of(type), QLatin1StringView(context.category), text));
}

void ProcessLog::write(const QString &echoed, const QString &filed)
{
    if (is_writing)
        return print_line(echoed);

    const std::scoped_lock lock(mutex);
    if (living == nullptr)
        return print_line(echoed);
    is_writing = true;
    print_line(echoed, living->echo_);
    living->file_.append((dated(filed) + u'\n').toUtf8());
    is_writing = false;
}

QString log_path()
{
    return QDir(data_dir()).filePath(QStringLiteral("logs/tallyhand.log"));
}

QString start_line(const QString &store_path)
{
    return QStringLiteral("%1 %2 starts, Qt %3, %4 (%5), store %6")
        .arg(application_name, application_version, QLatin1StringView(qVersion()),
             QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture(), store_path);
}

} // namespace tally::platform

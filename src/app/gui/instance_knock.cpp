#include "app/gui/instance_knock.h"

#include "ui/parts/ui_log.h"

#include <QDir>
#include <QLocalSocket>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace tally::app {

QString knock_name()
{
    const auto name = QStringLiteral("LedgerlineTallyhand-Knock");
#ifdef Q_OS_WIN
    DWORD session = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &session);
    return name + u'-' + QString::number(session) + u'-' + qEnvironmentVariable("USERNAME");
#else
    const QString runtime_dir = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(runtime_dir))
        return QDir(runtime_dir).filePath(name);
    return name + u'-' + QString::number(::geteuid());
#endif
}

void knock(const QString &name)
{
#ifdef Q_OS_WIN
    // Only a process that the user has just started may come to the front, or let others.
    AllowSetForegroundWindow(ASFW_ANY);
#endif
    constexpr int patience = 500; // ms
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(patience))
        return;
    socket.write("show\n");
    socket.waitForBytesWritten(patience);
    socket.disconnectFromServer();
}

KnockListener::KnockListener(const QString &name, QObject *parent) : QObject(parent)
{
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this, &KnockListener::on_connection);
    QLocalServer::removeServer(name);
    if (!server_.listen(name))
        qCWarning(ui::log_ui) << "a second start cannot ask for the window:"
                              << server_.errorString();
}

void KnockListener::on_connection()
{
    // To have connected is all that there is to say.
    while (QLocalSocket *socket = server_.nextPendingConnection()) {
        socket->close();
        socket->deleteLater();
        Q_EMIT knocked();
    }
}

} // namespace tally::app

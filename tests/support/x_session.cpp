#include "support/x_session.h"

#include <sys/prctl.h>

#include <csignal>

namespace tally::test {

namespace {

constexpr int start_ms = 20'000;
constexpr int end_ms = 5'000;

void end(QProcess &process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(end_ms)) {
        process.kill();
        process.waitForFinished(end_ms);
    }
}

} // namespace

XSession::XSession(Manager manager)
{
    // A test that is killed must not leave them behind.
    for (QProcess *process : {&server_, &manager_})
        process->setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    running_ = start_server() && (manager == Manager::None || start_manager());
}

XSession::~XSession()
{
    end(manager_);
    end(server_);
}

QProcessEnvironment XSession::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), QString::fromLatin1(display_));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    return environment;
}

bool XSession::start_server()
{
    // The server tells its number when it is ready to be connected to. Without -noreset it starts
    // anew when its last client goes, and takes nobody meanwhile.
    server_.start(QStringLiteral("Xvfb"),
                  {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-noreset"),
                   QStringLiteral("-screen"), QStringLiteral("0"), QStringLiteral("1280x1024x24"),
                   QStringLiteral("-ac"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    QByteArray number;
    while (!number.endsWith('\n')) {
        if (!server_.waitForReadyRead(start_ms))
            return false;
        number += server_.readAllStandardOutput();
    }
    display_ = ":" + number.trimmed();
    return true;
}

bool XSession::start_manager()
{
    // Openbox runs a program once it manages the screen.
    manager_.setProcessEnvironment(environment());
    manager_.start(QStringLiteral("openbox"),
                   {QStringLiteral("--sm-disable"), QStringLiteral("--startup"),
                    QStringLiteral("echo managing")});
    QByteArray said;
    while (!said.contains("managing")) {
        if (!manager_.waitForReadyRead(start_ms))
            return false;
        said += manager_.readAllStandardOutput();
    }
    return true;
}

} // namespace tally::test

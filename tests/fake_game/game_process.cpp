#include "fake_game/game_process.h"

namespace tally::test {

namespace {

constexpr int answer_ms = 60'000;

} // namespace

GameProcess::GameProcess(const XSession &session, const QStringList &options)
    : GameProcess(session.environment(), options)
{}

GameProcess::GameProcess(const QProcessEnvironment &environment, const QStringList &options)
{
    process_.setProcessEnvironment(environment);
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(QStringLiteral(TALLY_FAKE_GAME), options);
    ready_ = answer() == "ready\n";
}

GameProcess::~GameProcess()
{
    process_.closeWriteChannel();
    if (!process_.waitForFinished(answer_ms))
        kill();
}

bool GameProcess::tell(const QByteArray &command)
{
    process_.write(command + '\n');
    return answer() == "done\n";
}

void GameProcess::kill()
{
    process_.kill();
    process_.waitForFinished(answer_ms);
}

QByteArray GameProcess::answer()
{
    while (!process_.canReadLine()) {
        if (!process_.waitForReadyRead(answer_ms))
            return {};
    }
    return process_.readLine();
}

} // namespace tally::test

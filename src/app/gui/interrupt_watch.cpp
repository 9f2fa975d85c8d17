#include "app/gui/interrupt_watch.h"

#include "platform/log/process_log.h"

#include <csignal>

namespace tally::app {
namespace {

volatile std::sig_atomic_t interrupt_flag = 0;

extern "C" void on_interrupt(int)
{
    interrupt_flag = 1;
}

} // namespace

InterruptWatch::InterruptWatch(QObject *parent, std::chrono::milliseconds interval)
    : QObject(parent)
{
    std::signal(SIGINT, on_interrupt);
    connect(&timer_, &QTimer::timeout, this, &InterruptWatch::check);
    timer_.start(interval);
}

void InterruptWatch::check()
{
    if (interrupt_flag == 0)
        return;
    timer_.stop();
    platform::ProcessLog::line(QStringLiteral("[main] SIGINT received — quitting"));
    Q_EMIT interrupted();
}

} // namespace tally::app

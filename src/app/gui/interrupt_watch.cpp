#include "app/gui/interrupt_watch.h"

#include "platform/log/process_log.h"

#include <algorithm>
#include <csignal>
#include <iterator>

namespace tally::app {
namespace {

struct Interrupt {
    int signal;
    const char *name;
};

constexpr Interrupt interrupts[] = {
    {SIGINT, "SIGINT"},
    {SIGTERM, "SIGTERM"},
#ifdef SIGHUP
    {SIGHUP, "SIGHUP"},
#endif
};

volatile std::sig_atomic_t interrupt_flag = 0;
volatile std::sig_atomic_t received_signal = 0;

extern "C" void on_interrupt(int signal)
{
    received_signal = signal;
    interrupt_flag = 1;
}

QString name_of(int signal)
{
    const auto *found =
        std::find_if(std::begin(interrupts), std::end(interrupts),
                     [signal](const Interrupt &each) { return each.signal == signal; });
    return QString::fromLatin1(found != std::end(interrupts) ? found->name : "signal");
}

} // namespace

InterruptWatch::InterruptWatch(QObject *parent, std::chrono::milliseconds interval)
    : QObject(parent)
{
    interrupt_flag = 0;
    for (const auto &[signal, name] : interrupts) {
        // Whoever started the program with a signal ignored (nohup) wants it so.
        if (std::signal(signal, on_interrupt) == SIG_IGN && signal != SIGINT)
            std::signal(signal, SIG_IGN);
    }
    connect(&timer_, &QTimer::timeout, this, &InterruptWatch::check);
    timer_.start(interval);
}

void InterruptWatch::check()
{
    if (interrupt_flag == 0)
        return;
    timer_.stop();
    platform::ProcessLog::line(
        QStringLiteral("[main] %1 received — quitting").arg(name_of(received_signal)));
    Q_EMIT interrupted();
}

} // namespace tally::app

#pragma once

#include "figure.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <functional>
#include <vector>

namespace tally::bench {

/// Nanoseconds that the process has run, all its threads together.
inline double processor_time()
{
    double sum = 0.0;
    const QDir threads(QStringLiteral("/proc/self/task"));
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(threads.filePath(thread + QStringLiteral("/schedstat")));
        if (file.open(QIODevice::ReadOnly))
            sum += file.readAll().split(' ').first().toDouble();
    }
    return sum;
}

inline void run_events(int ms)
{
    QEventLoop loop; // where waiting with QTest would look around a hundred times a second
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

/// The share of a core, in per cent, that the event loop takes for so long.
inline double share(int seconds)
{
    QElapsedTimer timer;
    timer.start();
    const double before = processor_time();
    run_events(seconds * 1'000);
    return 100.0 * (processor_time() - before) / static_cast<double>(timer.nsecsElapsed());
}

/// The same with a timer that beats as often as a pinned overlay looks around, and does nothing.
inline double share_of_bare_timer(int seconds)
{
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, [] {});
    beat.start(50);
    return share(seconds);
}

inline double microseconds_a_call(int calls, const std::function<void()> &call)
{
    std::vector<double> times;
    for (int i = 0; i < calls; ++i) {
        QElapsedTimer timer;
        timer.start();
        call();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e3);
    }
    return median(times);
}

} // namespace tally::bench

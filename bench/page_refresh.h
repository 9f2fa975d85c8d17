#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>

namespace tally::bench {

inline double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

struct Refresh {
    double stop = 0.0;  ///< the longest time between two beats of the window's thread
    double until = 0.0; ///< the figures stand
};

/// \param page tells by `busy` whether figures are still to come
/// \param ask refreshes what the page shows, among others
template <typename Page, typename Ask>
Refresh refresh(const Page &page, Ask ask)
{
    Refresh result;
    QElapsedTimer since_beat;
    QTimer heartbeat;
    heartbeat.setTimerType(Qt::PreciseTimer);
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        result.stop = std::max(result.stop, milliseconds(since_beat));
        since_beat.start();
    });
    QEventLoop loop;
    QElapsedTimer total;
    QTimer::singleShot(20, &loop, [&] {
        total.start();
        ask();
        const auto finish = [&] {
            result.until = milliseconds(total);
            QTimer::singleShot(50, &loop, &QEventLoop::quit); // painted as well
        };
        if (!page.busy())
            return finish();
        auto *settled = new QTimer(&loop);
        QObject::connect(settled, &QTimer::timeout, [&page, settled, finish] {
            if (page.busy())
                return;
            settled->stop();
            finish();
        });
        settled->start(1);
    });
    since_beat.start();
    heartbeat.start(1);
    loop.exec();
    return result;
}

} // namespace tally::bench

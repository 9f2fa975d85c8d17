#pragma once

#include <QCoreApplication>

namespace tally::test {

/// The application of tests without windows. Under ThreadSanitizer it tells the order that Qt's
/// event queue makes between threads: what happened before a signal or a call was handed over
/// happened before it was delivered. Qt is not compiled with the sanitizer, which sees of the queue
/// no more than the wake-up that comes after it.
class OrderedApplication : public QCoreApplication {
public:
    using QCoreApplication::QCoreApplication;
#ifdef TALLY_TSAN
    bool notify(QObject *receiver, QEvent *event) override;
#endif
};

} // namespace tally::test

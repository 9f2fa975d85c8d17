#pragma once

#include <QLocalServer>
#include <QString>

namespace tally::app {

/// How a second start asks the instance that runs already to show its window. Where it listens is
/// bound to the user and the session, like the single-instance lock.
QString knock_name();

/// Asks; does nothing where nobody listens. Needs an application object.
void knock(const QString &name);

/// Listens for knocks while it lives.
class KnockListener : public QObject {
    Q_OBJECT

public:
    /// For the holder of the single-instance lock alone: it takes the place of whoever died without
    /// clearing up.
    KnockListener(const QString &name, QObject *parent);

Q_SIGNALS:
    void knocked();

private:
    void on_connection();

    QLocalServer server_;
};

} // namespace tally::app

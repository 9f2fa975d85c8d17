#pragma once

#include <QByteArray>

#include <ctime>

namespace tally::test {

/// The zone of the user's clock as long as this object lives.
class LocalZone {
public:
    explicit LocalZone(const char *name) : before_(qgetenv("TZ")) { set(name); }
    ~LocalZone()
    {
        if (before_.isNull())
            qunsetenv("TZ");
        else
            qputenv("TZ", before_);
        tzset();
    }
    LocalZone(const LocalZone &) = delete;
    LocalZone &operator=(const LocalZone &) = delete;

private:
    static void set(const char *name)
    {
        qputenv("TZ", name);
        tzset();
    }

    QByteArray before_;
};

} // namespace tally::test

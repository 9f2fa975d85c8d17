#pragma once

#include <QByteArray>
#include <QProcess>

namespace tally::test {

/// An X server without a screen, on a display number that is free, and a window manager on it.
/// Both end with this object.
class XSession {
public:
    enum class Manager { None, Openbox };

    explicit XSession(Manager manager = Manager::Openbox);
    ~XSession();
    XSession(const XSession &) = delete;
    XSession &operator=(const XSession &) = delete;

    /// Whether everything that was asked for runs.
    bool running() const { return running_; }
    /// As in DISPLAY.
    QByteArray display() const { return display_; }
    /// The environment of a program that shall show its windows here.
    QProcessEnvironment environment() const;

private:
    bool start_server();
    bool start_manager();

    QProcess server_;
    QProcess manager_;
    QByteArray display_;
    bool running_ = false;
};

} // namespace tally::test

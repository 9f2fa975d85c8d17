#include "reference_server.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

using namespace tally::reference;

namespace {

int fail(const QString &reason)
{
    QTextStream(stderr) << "reference_server: " << reason << Qt::endl;
    return 2;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QCommandLineOption port(QStringLiteral("port"), QStringLiteral("0: the system chooses."),
                                  QStringLiteral("number"), QStringLiteral("0"));
    const QCommandLineOption key(QStringLiteral("key"),
                                 QStringLiteral("server, renewed, other or stranger."),
                                 QStringLiteral("name"), QStringLiteral("server"));
    const QCommandLineOption fault(
        QStringLiteral("fault"),
        QStringLiteral(
            "slow=MS, silent, status=CODE, cut, redirect=URL, short, garbled or endless, "
            "with @PATH behind it if not every request is meant. May be repeated."),
        QStringLiteral("fault"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Serves reference data to this machine."));
    parser.addHelpOption();
    parser.addOptions({port, key, fault});
    parser.addPositionalArgument(QStringLiteral("folder"),
                                 QStringLiteral("What sample_reference wrote."));
    parser.addPositionalArgument(QStringLiteral("keys"),
                                 QStringLiteral("What make-server-keys wrote."));
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 2)
        parser.showHelp(2);

    ReferenceServer server(arguments[0], arguments[1], parser.value(key));
    for (const QString &text : parser.values(fault)) {
        const std::optional<Fault> parsed = parse_fault(text);
        if (!parsed)
            return fail(QStringLiteral("no such fault: ") + text);
        server.add_fault(*parsed);
    }
    bool is_port = false;
    const quint16 number = parser.value(port).toUShort(&is_port);
    if (!is_port)
        return fail(QStringLiteral("no such port: ") + parser.value(port));
    if (!server.listen(number))
        return fail(server.error());
    QTextStream(stdout) << "https://localhost:" << server.port() << Qt::endl;
    return QCoreApplication::exec();
}

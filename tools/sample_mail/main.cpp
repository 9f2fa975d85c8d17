#include "sample_world.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>
#include <stdexcept>

namespace {

using tally::sample::WorldOptions;

/// The whole number of an option.
/// \throws std::runtime_error where its text is none between `low` and `high`
qint64 number_of(const QCommandLineParser &parser, const QString &name, qint64 low, qint64 high)
{
    const QString text = parser.value(name);
    bool is_number = false;
    const qint64 value = text.toLongLong(&is_number);
    if (!is_number || value < low || value > high)
        throw std::runtime_error(
            QStringLiteral("--%1 wants a whole number from %2 to %3, not \"%4\"")
                .arg(name)
                .arg(low)
                .arg(high)
                .arg(text)
                .toStdString());
    return value;
}

void add_options(QCommandLineParser &parser)
{
    const WorldOptions defaults;
    const auto add = [&parser](const QString &name, const QString &what, qint64 value) {
        parser.addOption({name, what, QStringLiteral("N"), QString::number(value)});
    };
    add(QStringLiteral("seed"), QStringLiteral("Start of the random source."),
        static_cast<qint64>(defaults.seed));
    add(QStringLiteral("days"), QStringLiteral("Days that the mails spread over."), defaults.days);
    add(QStringLiteral("players"), QStringLiteral("Accounts that received mails."),
        defaults.players);
    add(QStringLiteral("count"), QStringLiteral("Mails in all."), defaults.count);
    add(QStringLiteral("end"), QStringLiteral("End of the days, in seconds since the Unix epoch."),
        static_cast<qint64>(defaults.end));
}

WorldOptions read_options(const QCommandLineParser &parser)
{
    const auto read = [&parser](const QString &name, qint64 low, qint64 high) {
        return number_of(parser, name, low, high);
    };
    WorldOptions options;
    options.seed = static_cast<quint64>(read(QStringLiteral("seed"), 0, 4294967295));
    options.days = static_cast<int>(read(QStringLiteral("days"), 1, 1000));
    options.players = static_cast<int>(read(QStringLiteral("players"), 1, 1000));
    options.count = static_cast<int>(read(QStringLiteral("count"), 0, 10000000));
    options.end = static_cast<double>(read(QStringLiteral("end"), 1600000000, 2900000000));
    return options;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Writes a folder of made-up game mails. The same options give the same files."));
    parser.addHelpOption();
    add_options(parser);
    parser.addPositionalArgument(QStringLiteral("DIR"),
                                 QStringLiteral("The folder to write into."));
    parser.process(application);
    try {
        if (parser.positionalArguments().size() != 1)
            throw std::runtime_error("name one folder to write into, see --help");
        tally::sample::write_mail_folder(read_options(parser),
                                         parser.positionalArguments().constFirst());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "sample_mail: %s\n", error.what());
        return 1;
    }
    return 0;
}

// Fills a new store with the reports of years of play: fill_store [--rounds N] [--players N]
// [--days N] [--seed N] FILE

#include "store_filler.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>
#include <exception>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    tally::tools::FillOptions options;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Fills a new store with the reports of years of play."));
    parser.addHelpOption();
    const auto number = [](int value) {
        return QString::number(value);
    };
    const QCommandLineOption rounds(QStringLiteral("rounds"), QStringLiteral("chain rounds"),
                                    QStringLiteral("N"), number(options.rounds));
    const QCommandLineOption players(QStringLiteral("players"), QStringLiteral("own accounts"),
                                     QStringLiteral("N"), number(options.players));
    const QCommandLineOption days(QStringLiteral("days"), QStringLiteral("days of play"),
                                  QStringLiteral("N"), number(options.days));
    const QCommandLineOption seed(QStringLiteral("seed"), QStringLiteral("of the random numbers"),
                                  QStringLiteral("N"), number(static_cast<int>(options.seed)));
    parser.addOptions({rounds, players, days, seed});
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("the store to make"));
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);

    options.rounds = parser.value(rounds).toInt();
    options.players = parser.value(players).toInt();
    options.days = parser.value(days).toInt();
    options.seed = parser.value(seed).toUInt();
    if (options.rounds < 1 || options.players < 1 || options.days < 1)
        parser.showHelp(2);
    try {
        tally::tools::fill_store(parser.positionalArguments().constFirst(), options);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "fill_store: %s\n", failure.what());
        return 1;
    }
}

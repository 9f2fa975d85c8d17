#include "reference_folder.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <exception>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Writes made-up reference tables and icons, as a server has them."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("FOLDER"), QStringLiteral("What to fill."));
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);
    try {
        tally::sample::write_reference_folder(parser.positionalArguments().constFirst());
        return 0;
    } catch (const std::exception &error) {
        QTextStream(stderr) << "sample_reference: " << error.what() << Qt::endl;
        return 1;
    }
}

#include "reference_folder.h"

#include <QCoreApplication>
#include <QTextStream>

#include <exception>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        QTextStream(stderr) << "usage: sample_reference FOLDER" << Qt::endl;
        return 2;
    }
    try {
        tally::sample::write_reference_folder(QCoreApplication::arguments().at(1));
        return 0;
    } catch (const std::exception &error) {
        QTextStream(stderr) << "sample_reference: " << error.what() << Qt::endl;
        return 1;
    }
}

#include "reference_folder.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: sample_reference FOLDER\n", stderr);
        return 2;
    }
    try {
        tally::sample::write_reference_folder(QCoreApplication::arguments().at(1));
        return 0;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "sample_reference: %s\n", error.what());
        return 1;
    }
}

// The batch import as a whole program, against a floor that does nothing but move the bytes and the
// rows: import_bench [FILES]

#include "figure.h"
#include "import_floor.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <chrono>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace tally::bench;

constexpr int runs = 5;

struct ProgramRun {
    double seconds;
    double peak_megabytes;
};

/// Runs a program in a folder, its output thrown away.
ProgramRun run_program(const QString &folder, const QByteArrayList &command)
{
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        std::vector<char *> arguments;
        for (const QByteArray &word : command)
            arguments.push_back(const_cast<char *>(word.constData()));
        arguments.push_back(nullptr);
        const int null = open("/dev/null", O_WRONLY);
        if (null >= 0 && dup2(null, STDERR_FILENO) >= 0 &&
            chdir(folder.toLocal8Bit().constData()) == 0)
            execv(arguments.front(), arguments.data());
        _exit(127);
    }
    int status = 0;
    rusage usage = {};
    if (wait4(child, &status, 0, &usage) != child || status != 0)
        throw std::runtime_error("cannot run " + command.join(' ').toStdString());
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return {elapsed.count(), static_cast<double>(usage.ru_maxrss) / 1024.0};
}

double seconds_of(const std::function<void()> &work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct ImportRuns {
    std::vector<double> first_ratios;
    std::vector<double> again_ratios;
    double peak_megabytes = 0.0;
};

ProgramRun import(const QString &folder, const QString &mails)
{
    return run_program(folder, {TALLY_EXECUTABLE, "--import-only", mails.toLocal8Bit()});
}

void make_mails(const QString &mails, int count)
{
    run_program(QStringLiteral("."), {TALLY_SAMPLE_MAIL, "--count", QByteArray::number(count),
                                      "--days", "60", "--players", "4", mails.toLocal8Bit()});
}

ImportRuns measure(const QString &scratch, const QString &mails)
{
    ImportRuns result;
    const QString first = QDir(scratch).filePath(QStringLiteral("reference"));
    QDir().mkpath(first);
    import(first, mails);
    const ImportFloor floor(QDir(first).filePath(QStringLiteral("tally-import.db")), mails);
    for (int run = 0; run < runs; ++run) {
        const QTemporaryDir ours(scratch + QStringLiteral("/ours-XXXXXX"));
        const QTemporaryDir theirs(scratch + QStringLiteral("/floor-XXXXXX"));
        const ProgramRun import_run = import(ours.path(), mails);
        const double floor_run = seconds_of([&] { floor.import(theirs.path()); });
        const ProgramRun again_run = import(ours.path(), mails);
        const double again_floor = seconds_of([&] { floor.look_up_again(ours.path()); });
        std::printf("first import %.2f s, floor %.2f s; again %.3f s, floor %.3f s; "
                    "peak %.0f and %.0f MB\n",
                    import_run.seconds, floor_run, again_run.seconds, again_floor,
                    import_run.peak_megabytes, again_run.peak_megabytes);
        std::fflush(stdout);
        result.first_ratios.push_back(import_run.seconds / floor_run);
        result.again_ratios.push_back(again_run.seconds / again_floor);
        result.peak_megabytes =
            std::max({result.peak_megabytes, import_run.peak_megabytes, again_run.peak_megabytes});
    }
    return result;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const int count = argc > 1 ? std::atoi(argv[1]) : 20'000;
    // On the disk that holds the build, as a player's data folder is on a disk.
    const QTemporaryDir scratch(QCoreApplication::applicationDirPath() +
                                QStringLiteral("/import-XXXXXX"));
    const QString few = scratch.filePath(QStringLiteral("few"));
    const QString many = scratch.filePath(QStringLiteral("many"));
    make_mails(few, count / 4);
    make_mails(many, count);
    const QString few_store = scratch.filePath(QStringLiteral("few-store"));
    QDir().mkpath(few_store);
    const double few_peak = import(few_store, few).peak_megabytes;
    const ImportRuns result = measure(scratch.path(), many);

    print_figure("import_first", median(result.first_ratios), Goal::at_most, 2.0);
    print_figure("import_again", median(result.again_ratios), Goal::at_most, 1.5);
    print_figure("import_peak_megabytes", result.peak_megabytes, Goal::at_most, 120.0);
    print_figure("import_peak_megabytes_more_than_for_a_quarter_of_the_files",
                 result.peak_megabytes - few_peak, Goal::at_most, 10.0);
}

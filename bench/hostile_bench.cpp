// What the import of one mail takes at most, in memory and processor time. Each mail is made to
// cost much and imported by a process of its own. hostile_bench [NAME]

#include "costly_mails.h"
#include "data/import/import_pipeline.h"
#include "data/import/mail_file.h"
#include "data/store/tally_db.h"
#include "figure.h"
#include "platform/files/exact_files.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <array>
#include <cstring>
#include <fstream>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

using namespace tally;

constexpr double max_megabytes = 512;
constexpr double max_seconds = 10;

struct Cost {
    double megabytes = 0;
    double seconds = 0;
};

double peak_megabytes()
{
    // Not getrusage: its figure includes what the parent had in memory at the fork.
    std::ifstream status{"/proc/self/status"};
    std::string word;
    while (status >> word) {
        double kib = 0;
        if (word == "VmHWM:" && status >> kib)
            return kib * 1024 / 1e6;
    }
    return 0;
}

double processor_seconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// In the child: the import of the one mail in a folder.
int import_mail(const QString &dir)
{
    bool stored = false;
    {
        data::TallyDb db(dir + QStringLiteral("/tally.db"));
        db.init_schema();
        stored = data::import_file(dir + QStringLiteral("/Persistent.Mail.1"),
                                   dir + QStringLiteral("/raw"), db);
    }
    std::printf("%g %g %d\n", peak_megabytes(), processor_seconds(), stored);
    return 0;
}

/// In the child: whether a lack of memory can be caught.
int run_out_of_memory()
{
    constexpr rlim_t limit = rlim_t{1} << 30;
    const rlimit address_space{limit, limit};
    setrlimit(RLIMIT_AS, &address_space);
    try {
        std::vector<std::unique_ptr<std::array<char, 1000>>> pieces;
        for (;;)
            pieces.push_back(std::make_unique<std::array<char, 1000>>());
    } catch (const std::bad_alloc &) {
        return 0;
    }
}

Cost cost_of(const bench::CostlyMail &mail)
{
    const QTemporaryDir dir;
    {
        QFile file(dir.filePath(QStringLiteral("Persistent.Mail.1")));
        const QByteArray bytes = mail.make(data::MailFile::max_size);
        if (bytes.size() > data::MailFile::max_size || !file.open(QFile::WriteOnly) ||
            file.write(bytes) != bytes.size())
            std::exit(1);
    }
    QProcess import;
    import.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    import.start(QStringLiteral("/proc/self/exe"), {QStringLiteral("--import"), dir.path()});
    import.waitForFinished(-1);
    const QByteArrayList words = import.readAllStandardOutput().trimmed().split(' ');
    if (words.size() != 3) {
        std::printf("the import of \"%s\" has crashed\n", mail.name);
        return {1e9, 1e9};
    }
    const Cost cost{words[0].toDouble(), words[1].toDouble()};
    std::printf("%-28s %6.0f MB %6.2f s  %s\n", mail.name, cost.megabytes, cost.seconds,
                words[2] == "1" ? "stored" : "no report");
    std::fflush(stdout);
    return cost;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 3 && std::strcmp(argv[1], "--import") == 0)
        return import_mail(QString::fromLocal8Bit(argv[2]));
    if (argc == 2 && std::strcmp(argv[1], "--run-out-of-memory") == 0)
        return run_out_of_memory();
    Cost worst;
    for (const bench::CostlyMail &mail : bench::costly_mails()) {
        if (argc > 1 && !std::strstr(mail.name, argv[1]))
            continue;
        const Cost cost = cost_of(mail);
        worst.megabytes = std::max(worst.megabytes, cost.megabytes);
        worst.seconds = std::max(worst.seconds, cost.seconds);
    }
    const bool caught = QProcess::execute(QStringLiteral("/proc/self/exe"),
                                          {QStringLiteral("--run-out-of-memory")}) == 0;
    bench::print_figure("out_of_memory_is_caught", caught, bench::Goal::at_least, 1);
    bench::print_figure("hostile_mail_megabytes", worst.megabytes, bench::Goal::at_most,
                        max_megabytes);
    bench::print_figure("hostile_mail_seconds", worst.seconds, bench::Goal::at_most, max_seconds);
}

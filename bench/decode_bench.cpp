// Decoding against Qt's CBOR reader on the same tree, and marker search against memmem.
// decode_bench [decode|search]

#include "figure.h"

#include "data/mail/key_marker.h"
#include "data/mail/mail_value.h"
#include "sample_mails.h"

#include <QCborMap>
#include <QCborValue>
#include <QVariantMap>

#include <benchmark/benchmark.h>

#include <cstring>
#include <map>

namespace {

using namespace tally;

constexpr int repetitions = 9;

const QByteArray &field_mail()
{
    static const QByteArray mail = sample::large_field_mail();
    return mail;
}

void decode_ours(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(data::parse_bytes(field_mail()));
}

void decode_cbor(benchmark::State &state)
{
    const QByteArray cbor =
        QCborMap::fromVariantMap(data::parse_bytes(field_mail())).toCborValue().toCbor();
    for (auto _ : state)
        benchmark::DoNotOptimize(QCborValue::fromCbor(cbor).toVariant().toMap());
}

/// 100 MB of mails, without the needle.
const QByteArray &haystack()
{
    static const QByteArray bytes = [] {
        constexpr qsizetype size = 100'000'000;
        QByteArray mails;
        mails.reserve(size + field_mail().size());
        for (quint32 seed = 0; mails.size() < size; ++seed)
            mails += seed % 2 ? sample::sample_chain_mail(seed) : sample::sample_field_mail(seed);
        return mails;
    }();
    return bytes;
}

const QByteArray &needle()
{
    static const QByteArray marker = data::key_marker("NpcKillLoad");
    return marker;
}

void search_ours(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(data::find_all_offsets(haystack(), needle()));
}

void search_memmem(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(
            memmem(haystack().constData(), static_cast<size_t>(haystack().size()),
                   needle().constData(), static_cast<size_t>(needle().size())));
}

/// Prints the usual table and keeps the processor time of each repetition.
class TimesReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Iteration)
                times_[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
        }
    }

    /// How many times as fast `name` is as `peer`.
    double ratio(const std::string &name, const std::string &peer) const
    {
        return bench::median(times_.at(peer)) / bench::median(times_.at(name));
    }

private:
    std::map<std::string, std::vector<double>> times_;
};

void register_pair(const char *name, void (*ours)(benchmark::State &), const char *peer_name,
                   void (*peer)(benchmark::State &))
{
    for (const auto &[label, function] : {std::pair(name, ours), std::pair(peer_name, peer)})
        benchmark::RegisterBenchmark(label, function)
            ->Repetitions(repetitions)
            ->Unit(benchmark::kMicrosecond);
}

} // namespace

int main(int argc, char *argv[])
{
    const std::string which = argc > 1 ? argv[1] : "";
    const bool decode = which != "search";
    const bool search = which != "decode";
    if (decode)
        register_pair("parse_bytes", decode_ours, "QCborValue", decode_cbor);
    if (search)
        register_pair("find_all_offsets", search_ours, "memmem", search_memmem);

    // Interleaved, so that a slow moment of the machine hits both sides.
    std::string program = argv[0];
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    char *options[] = {program.data(), interleave.data(), nullptr};
    int option_count = 2;
    benchmark::Initialize(&option_count, options);
    TimesReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("field mail: %lld bytes\n", static_cast<long long>(field_mail().size()));
    if (decode)
        bench::print_figure("decode", reporter.ratio("parse_bytes", "QCborValue"),
                            bench::Goal::at_least, 4.0);
    if (search)
        bench::print_figure("search", reporter.ratio("find_all_offsets", "memmem"),
                            bench::Goal::at_least, 0.9);
}

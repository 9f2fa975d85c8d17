#include "data/mail/battle_report.h"
#include "fuzz_input.h"

using namespace tally;

namespace {

double sort_number(std::optional<double> value)
{
    return value == value ? value.value_or(0.0) : 0.0;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArrayView mail = fuzz::input_of(data, size);
    const auto battle_in = [](QByteArrayView bytes) {
        return data::parse_battle(bytes, [](double) { return std::optional<int>(); });
    };
    if (const auto report = fuzz::found_by(battle_in, mail)) {
        fuzz::require(!report->rounds.empty());
        for (size_t i = 1; i < report->rounds.size(); ++i)
            fuzz::require(sort_number(report->rounds[i - 1].ets) >=
                          sort_number(report->rounds[i].ets));
    }
    // Damaged trees never reach the loot of a report: read it from anywhere, too.
    for (qsizetype pos = 0; pos < mail.size(); pos += 1 + mail.size() / 8)
        fuzz::found_by([pos](QByteArrayView bytes) { return data::read_loot(bytes, pos); }, mail);
    return 0;
}

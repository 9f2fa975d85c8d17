#include "data/mail/fort_report.h"
#include "fuzz_input.h"

using namespace tally;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (const auto report = data::parse_fort(fuzz::input_of(data, size))) {
        fuzz::require(!report->loot.empty());
        fuzz::require(report->fort_level >= 0 && report->damage_percent >= 0);
    }
    return 0;
}

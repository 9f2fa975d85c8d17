#include "data/mail/trial_report.h"
#include "fuzz_input.h"

using namespace tally;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (const auto report = data::parse_trial(fuzz::input_of(data, size)))
        fuzz::require(!report->participants.empty());
    return 0;
}

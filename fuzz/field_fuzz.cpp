#include "data/mail/field_report.h"
#include "fuzz_input.h"

#include <QVariantMap>

using namespace tally;

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto field_in = [](QByteArrayView bytes) {
        return data::parse_field(bytes);
    };
    const auto report = fuzz::found_by(field_in, fuzz::input_of(data, size));
    if (!report)
        return 0;
    fuzz::require(!report->isEmpty());
    int attack_seq = 0;
    for (const QVariant &attack : *report) {
        const QVariantMap row = attack.toMap();
        const double id = row.value(QStringLiteral("attack_id")).toDouble();
        fuzz::require(id == id);
        fuzz::require(row.value(QStringLiteral("attack_seq")).toInt() == ++attack_seq);
        fuzz::require(row.value(QStringLiteral("n_attacks")).toInt() == report->size());
    }
    return 0;
}

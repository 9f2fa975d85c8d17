#pragma once

#include "data/mail/mail_value.h"

#include <QByteArrayView>

#include <cstddef>
#include <cstdint>

/// Called by libFuzzer with one input after the other.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace tally::fuzz {

inline QByteArrayView input_of(const std::uint8_t *data, std::size_t size)
{
    return {data, static_cast<qsizetype>(size)};
}

/// What `parse` finds in an input; nothing where that would be more than any mail holds.
template <typename Parse>
auto found_by(Parse &&parse, QByteArrayView input) -> decltype(parse(input))
{
    try {
        return parse(input);
    } catch (const data::OversizedMail &) {
        return {};
    }
}

/// Stops the fuzzer with the input at hand where a law does not hold.
inline void require(bool holds)
{
    if (!holds)
        __builtin_trap();
}

} // namespace tally::fuzz

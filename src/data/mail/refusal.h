#pragma once

#include "data/mail/mail_value.h"
#include "platform/files/exact_files.h"

#include <QByteArrayView>
#include <QString>

#include <exception>
#include <new>
#include <optional>

namespace tally::data {

/// The report that `extract` makes of a mail, or nothing if the mail is damaged. What is no fault
/// of the mail's bytes, a lack of memory, reaches the caller, and so does `OversizedMail`.
template <typename Extract>
auto unless_damaged(Extract &&extract) -> decltype(extract())
{
    try {
        return extract();
    } catch (const OversizedMail &) {
        throw;
    } catch (const std::bad_alloc &) {
        throw;
    } catch (const std::exception &) {
        return std::nullopt;
    }
}

/// Logs why a mail is passed over although it may be a report.
void log_refusal(const QString &mail_name, const std::exception &reason);

/// The report that `parse` finds in a file's bytes. A file that cannot be read counts as empty; one
/// that cannot be parsed gives nothing and a line in the log.
template <typename Parse>
auto report_in_file(const QString &path, Parse &&parse) -> decltype(parse(QByteArrayView()))
{
    try {
        return parse(QByteArrayView(platform::read_file(path)));
    } catch (const std::exception &failure) {
        log_refusal(path, failure);
        return std::nullopt;
    }
}

} // namespace tally::data

#include "data/import/mail_folder.h"

#include "data/import/import_pipeline.h"

#include <utility>

namespace tally::data {

MailFolder::MailFolder(QString dir, FolderReader reader)
    : dir_(std::move(dir)), reader_(std::move(reader))
{}

std::optional<QSet<QString>> MailFolder::names_if_changed()
{
    const auto stamp = reader_.stamp(dir_);
    if (stamp && stamp == listed_ && ++looks_ < looks_between_listings)
        return std::nullopt;
    looks_ = 0;
    // A change right after the listing may get the time of the one before it. Only once the clock
    // has moved on does an equal stamp mean an equal folder.
    const bool settled =
        stamp && reader_.clock() - stamp->changed > platform::folder_stamp_granularity;
    listed_ = settled ? stamp : std::nullopt;

    QSet<QString> names;
    for (const QString &name : reader_.list(dir_)) {
        if (is_mail_file(name))
            names.insert(name);
    }
    return names;
}

} // namespace tally::data

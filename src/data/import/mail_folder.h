#pragma once

#include "platform/clock/clock.h"
#include "platform/files/exact_files.h"
#include "platform/files/folder_stamp.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace tally::data {

/// The operations of the system that a look at a folder needs.
struct FolderReader {
    std::function<std::optional<platform::FolderStamp>(const QString &)> stamp =
        platform::folder_stamp;
    std::function<QStringList(const QString &)> list = platform::regular_file_names;
    platform::Clock clock = platform::system_time;
};

/// A folder that is looked at again and again for mails. Listing a large folder costs far more than
/// asking when it changed, so it is listed only if it may hold something else than at the last
/// look.
class MailFolder {
public:
    /// At the latest after so many looks the folder is listed, whatever its stamp says.
    static constexpr int looks_between_listings = 30;

    explicit MailFolder(QString dir, FolderReader reader = {});

    /// The names of the mails, or nothing if they are certainly the same as at the last look.
    std::optional<QSet<QString>> names_if_changed();

private:
    QString dir_;
    FolderReader reader_;
    std::optional<platform::FolderStamp> listed_; ///< set only if it stands for what was listed
    int looks_ = 0;
};

} // namespace tally::data

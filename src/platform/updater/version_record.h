#pragma once

#include "platform/endpoint/endpoint.h"
#include "platform/updater/transfer.h"

#include <QJsonObject>
#include <QString>

#include <chrono>
#include <optional>

namespace tally::platform::Updater {

/// The update that a version record offers.
enum class UpdateForm {
    Executable, ///< a new executable alone
    Payload,    ///< a zip with the whole installation, its executable in the root
};

struct UpdateFile {
    UpdateForm form = UpdateForm::Executable;
    QString url;
    QString sha256;  ///< as the record has it; empty: it has none
    qint64 size = 0; ///< of the file in bytes, as the record tells it; below 1: it does not

    /// Without a hash, or with one that can be one.
    bool has_usable_hash() const;
};

struct FetchOptions {
    std::chrono::milliseconds time_limit{10'000};
    const StopFlag *stop = nullptr;
};

/// Asks the update server for its version record. Blocks the caller, whose events go on being
/// served, for at most the time limit.
/// \return nothing if no record has come that counts (`record_fault`); the log says why.
std::optional<QJsonObject> fetch_version_info(const Endpoint &endpoint = shipped_endpoint(),
                                              const FetchOptions &options = {});

/// Why a record counts as absent; nothing if it counts. What a record says ends in a script that
/// runs with the user's rights.
/// \param public_key as in `Endpoint::update_key`
std::optional<QString> record_fault(const QJsonObject &record, const QByteArray &public_key);

/// A text of a record: empty if it is missing, and "?", which is no version, no address and no
/// hash, if it is something else than a text.
QString record_text(const QJsonObject &record, QLatin1StringView key);

/// The zip, where there is one; otherwise the executable.
UpdateFile update_file(const QJsonObject &record);

/// Whether a text can stand for a version wherever one is needed: in a file name, in a script.
bool is_version_name(const QString &text);
bool is_https(const QString &url);

/// Compares texts, not numbers. False if either is empty.
bool is_newer(const QString &a, const QString &b);

} // namespace tally::platform::Updater

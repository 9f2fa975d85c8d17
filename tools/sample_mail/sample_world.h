#pragma once

#include "sample_mails.h"
#include "world_plan.h"

#include <QString>

namespace tally::sample {

struct WorldMail {
    QString file_name;
    QByteArray bytes;
    qint64 mtime_ms = 0; ///< since the Unix epoch
    MailKind kind = MailKind::Other;
};

/// Some players' mails of some days, one after the other. The same options give the same mails.
class SampleWorld {
public:
    explicit SampleWorld(const WorldOptions &options);

    /// The next mail, oldest first; nothing behind the last.
    std::optional<WorldMail> next();

private:
    /// One account and what its next chains depend on.
    struct Account {
        Player player;
        std::vector<Barbarian> survivors; ///< fought without loot, so worth another attack
        std::vector<double> heroes;
    };

    QByteArray write(Random &random, const PlannedMail &mail, MailHead &head);
    QByteArray write_chain(Random &random, const PlannedMail &mail, MailHead &head);
    QByteArray write_boss_kill(Random &random, const PlannedMail &mail, const MailHead &head);
    void meet_again(Random &random, Account &account, std::vector<ChainRound> &rounds);

    std::vector<PlannedMail> plan_;
    std::size_t position_ = 0;
    std::vector<Account> accounts_;
    std::vector<Player> neighbours_;
    quint64 next_mail_id_ = 0;
};

/// Writes the mails of a world into `dir`, which is made where missing, with their modification
/// times. Files of the same name are replaced, others stay.
/// \throws std::runtime_error where a file or the folder cannot be written
void write_mail_folder(const WorldOptions &options, const QString &dir);

} // namespace tally::sample

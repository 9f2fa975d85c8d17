#include "sample_world.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTimeZone>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace tally::sample {
namespace {

constexpr std::size_t most_survivors = 8;

/// Mails carry microseconds, but what tells mails apart here are milliseconds.
double to_milliseconds(double time)
{
    return std::floor(time * 1000.0) / 1000.0;
}

int chain_length(Random &random)
{
    return static_cast<int>(std::clamp(random.skewed(5.0, 1.2), 1.0, 30.0));
}

void make_fort_rounds(Random &random, Chain &chain)
{
    // A fort chain is always a square rally, whose other rounds are free from the first import on.
    // In any other chain opening the store once more would make them so.
    chain.is_square_rally = true;
    const int fort_rounds =
        std::min<int>(random.chance(0.2) ? 2 : 1, static_cast<int>(chain.rounds.size()));
    for (int i = 0; i < fort_rounds; ++i) {
        ChainRound &round = chain.rounds[static_cast<std::size_t>(i)];
        round.is_fort = true;
        round.damage_dealt = random.whole(1500000, 6000000);
        round.enemy.npc_type = random.whole(101101, 101115);
        round.enemy.castle_level = random.whole(1, 15);
        round.is_won = i + 1 == fort_rounds;
    }
}

QByteArray field_fight(Random &random, const PlannedMail &mail, MailHead &head)
{
    FieldFight fight;
    fight.attacks = static_cast<int>(std::clamp(random.skewed(1.5, 1.3), 1.0, 12.0));
    fight.start = head.time;
    head.time = to_milliseconds(mail.time + fight.attacks * random.real(20.0, 120.0));
    if (random.chance(0.1))
        head.box = "Archive";
    fight.head = head;
    const double lot = random.real(0.0, 1.0);
    fight.kind = lot < 0.6 ? FieldKind::Open : lot < 0.8 ? FieldKind::Rally : FieldKind::Garrison;
    fight.ticks_each = static_cast<int>(std::min(random.skewed(14.0, 1.5), 1500.0 / fight.attacks));
    fight.ticks_each = std::min(fight.ticks_each, 140);
    fight.buffs_each = std::min(fight.ticks_each / 3 + 2, 40);
    return field_mail(random, fight);
}

std::runtime_error cannot_write(const QString &path, const QString &reason)
{
    return std::runtime_error(
        QStringLiteral("cannot write %1: %2").arg(path, reason).toStdString());
}

void write_file(const QDir &folder, const WorldMail &mail)
{
    QFile file(folder.filePath(mail.file_name));
    // Unbuffered, so that no late write changes the modification time.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        file.write(mail.bytes) != mail.bytes.size() ||
        !file.setFileTime(QDateTime::fromMSecsSinceEpoch(mail.mtime_ms, Qt::UTC),
                          QFileDevice::FileModificationTime))
        throw cannot_write(file.fileName(), file.errorString());
}

} // namespace

SampleWorld::SampleWorld(const WorldOptions &options) : plan_(plan_world(options))
{
    Random random(options.seed + 1);
    for (int i = 0; i < options.players; ++i) {
        Account account;
        account.player = random_player(random);
        for (int hero = 0; hero < 6; ++hero)
            account.heroes.push_back(random.whole(1, 200));
        accounts_.push_back(std::move(account));
    }
    for (int i = 0; i < 60; ++i)
        neighbours_.push_back(random_player(random));
    next_mail_id_ = 1000000000 + random.bits() % 1000000000;
}

std::optional<WorldMail> SampleWorld::next()
{
    if (position_ == plan_.size())
        return std::nullopt;
    const PlannedMail &mail = plan_[position_++];
    Random random(mail.seed);
    next_mail_id_ += 1 + random.bits() % 40;

    MailHead head;
    head.id = QByteArray::number(next_mail_id_);
    head.owner = accounts_[static_cast<std::size_t>(mail.player)].player;
    head.time = to_milliseconds(mail.time);

    WorldMail result;
    result.kind = mail.kind;
    result.bytes = write(random, mail, head);
    result.file_name = QStringLiteral("Persistent.Mail.") + QString::number(head.owner.id, 'f', 0) +
                       QString::fromLatin1(head.id);
    result.mtime_ms = qRound64(head.time * 1000.0) + random.integer(300, 20000);
    return result;
}

QByteArray SampleWorld::write(Random &random, const PlannedMail &mail, MailHead &head)
{
    switch (mail.kind) {
    case MailKind::Chain:
    case MailKind::FortChain:
        return write_chain(random, mail, head);
    case MailKind::Field:
        return field_fight(random, mail, head);
    case MailKind::Trial:
    case MailKind::Keep:
        return write_boss_kill(random, mail, head);
    case MailKind::Fort:
        return fort_mail(random, {head, random.integer(1, 15), random.integer(1, 100)});
    case MailKind::Other:
        break;
    }
    return other_mail(random, head);
}

QByteArray SampleWorld::write_chain(Random &random, const PlannedMail &mail, MailHead &head)
{
    Account &account = accounts_[static_cast<std::size_t>(mail.player)];
    Chain chain;
    chain.start = head.time;
    chain.rounds = random_rounds(random, chain_length(random));
    // Pairs repeat: a player has a few favourites.
    const std::size_t pair = random.bits() % (account.heroes.size() / 2);
    chain.hero_1 = account.heroes[2 * pair];
    chain.hero_2 = account.heroes[2 * pair + 1];
    chain.npc_btype = random.chance(0.05) ? 2.0 : 1.0;
    if (mail.kind == MailKind::FortChain)
        make_fort_rounds(random, chain);
    else
        chain.is_square_rally = random.chance(0.1);
    meet_again(random, account, chain.rounds);
    head.time = to_milliseconds(head.time + static_cast<double>(chain.rounds.size()) *
                                                random.real(25.0, 100.0));
    chain.head = head;
    return chain_mail(random, chain);
}

void SampleWorld::meet_again(Random &random, Account &account, std::vector<ChainRound> &rounds)
{
    std::vector<Barbarian> survivors;
    for (ChainRound &round : rounds) {
        if (!round.is_fort && !account.survivors.empty() && random.chance(0.25)) {
            round.enemy = account.survivors.back();
            account.survivors.pop_back();
            round.is_won = random.chance(0.8);
        }
        if (!round.is_won && !round.is_fort)
            survivors.push_back(round.enemy);
    }
    // Only a later chain can meet them, else one chain would hold a barbarian twice.
    for (const Barbarian &survivor : survivors)
        account.survivors.push_back(survivor);
    if (account.survivors.size() > most_survivors)
        account.survivors.erase(account.survivors.begin(),
                                account.survivors.end() - static_cast<qsizetype>(most_survivors));
}

QByteArray SampleWorld::write_boss_kill(Random &random, const PlannedMail &mail,
                                        const MailHead &head)
{
    Random group(mail.kind == MailKind::Keep ? mail.seed : mail.group_seed);
    std::vector<Player> helpers = neighbours_;
    group.shuffle(helpers);
    helpers.resize(
        static_cast<std::size_t>(group.integer(0, mail.kind == MailKind::Keep ? 4 : 19)));
    helpers.insert(helpers.begin() + group.integer(0, static_cast<int>(helpers.size())),
                   head.owner);
    return trial_mail(random, mail.kind == MailKind::Keep
                                  ? keep_kill(head, std::move(helpers))
                                  : canyon_kill(group, head, std::move(helpers)));
}

void write_mail_folder(const WorldOptions &options, const QString &dir)
{
    const QDir folder(dir);
    if (!folder.mkpath(QStringLiteral(".")))
        throw cannot_write(dir, QStringLiteral("the folder cannot be made"));
    SampleWorld world(options);
    while (const std::optional<WorldMail> mail = world.next())
        write_file(folder, *mail);
}

} // namespace tally::sample

#include "mail_encoder.h"
#include "sample_mails.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <stdexcept>

using namespace tally::sample;

namespace {

constexpr quint32 mails_of_a_kind = 12;

/// What the extractors look for, as the bytes that a mail holds.
constexpr const char *words[] = {
    "mailScene",
    "type",
    "Battle",
    "System",
    "BarCanyonKillBoss",
    "NpcType",
    "NpcBType",
    "CastleLevel",
    "IsFort",
    "CtId",
    "DisappearTick",
    "Ets",
    "Hurt",
    "Death",
    "NpcKillLoot",
    "Value",
    "Type",
    "SubType",
    "Bts",
    "Btk",
    "time",
    "Time",
    "SelfChar",
    "HId",
    "HId2",
    "PId",
    "PName",
    "AName",
    "IsRally",
    "SquareRally",
    "level",
    "result",
    "content",
    "Attacks",
    "CIdt",
    "Damage",
    "Kill",
    "KillScore",
    "HSS",
    "SkillId",
    "SkillLevel",
    "HWBs",
    "Buffs",
    "Affix",
    "receiver",
    "isConquerSeason",
    "body",
    "infos",
    "loots",
    "order",
    "damageRate",
    "pos",
    "x",
    "y",
    "title",
    "Barbarian Fort",
    "targetName",
    "position",
    "X",
    "Y",
    "attachments",
    "loot",
    "id",
};

void write_file(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot write " + path.toStdString());
}

/// libFuzzer's form of an entry: a quoted text with escaped bytes.
QByteArray quoted(const QByteArray &bytes)
{
    QByteArray escaped;
    for (const char byte : bytes)
        escaped += "\\x" + QByteArray(1, byte).toHex();
    return '"' + escaped + "\"\n";
}

QByteArray dictionary()
{
    QByteArray entries;
    for (const char *word : words)
        entries += quoted(text(word));
    for (const double value : {0.0, 1.0, 150009.0, 1.7e9, 1.7e15, 3e9, 1e300})
        entries += quoted(number(value));
    return entries + quoted(map()) + quoted("\xff");
}

void write_corpus(const QString &dir, const QByteArrayList &mails)
{
    if (!QDir().mkpath(dir))
        throw std::runtime_error("cannot make " + dir.toStdString());
    int index = 0;
    for (const QByteArray &mail : mails)
        write_file(QStringLiteral("%1/seed-%2").arg(dir).arg(index++), mail);
}

void write_corpora(const QString &dir)
{
    struct Kind {
        const char *name;
        QByteArray (*mail)(quint32 seed);
    };
    constexpr Kind kinds[] = {{"battle", sample_chain_mail},
                              {"field", sample_field_mail},
                              {"trial", sample_trial_mail},
                              {"fort", sample_fort_mail}};
    QByteArrayList all;
    for (const Kind &kind : kinds) {
        QByteArrayList mails;
        for (quint32 seed = 0; seed < mails_of_a_kind; ++seed)
            mails += kind.mail(seed);
        write_corpus(QStringLiteral("%1/%2").arg(dir, QLatin1StringView(kind.name)), mails);
        all += mails;
    }
    write_corpus(dir + QStringLiteral("/decoder"), all);
    write_file(dir + QStringLiteral("/mail.dict"), dictionary());
}

} // namespace

/// make_corpora DIR: writes seeds for each target into a folder of its name, and the dictionary.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    try {
        write_corpora(arguments.value(1, QStringLiteral(".")));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "make_corpora: %s\n", error.what());
        return 1;
    }
    return 0;
}
